#include "simulator/broker/Server.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/broker/WindowsProcessStarter.h"
#include "simulator/platform/Platform.h"
#include "simulator/platform/SystemTime.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Pipe.h"
#include "simulator/protocol/PipeChannel.h"

#include <thread>
#include <windows.h>

namespace sim
{

namespace
{

// A pipe instance that waits for its client.
class Listener
{
  public:
    explicit Listener(std::wstring const& name)
        : m_pipe(MakePipe(name)), m_connected(CreateEventW(nullptr, TRUE, FALSE, nullptr))
    {
        if (!m_pipe)
        {
            throw Error(L"cannot create the pipe " + name + L": " + SystemMessage(GetLastError()));
        }
        m_overlapped.hEvent = m_connected.Get();
        if (!ConnectNamedPipe(m_pipe.Get(), &m_overlapped) && GetLastError() == ERROR_PIPE_CONNECTED)
        {
            SetEvent(m_connected.Get());
        }
    }

    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;

    ~Listener()
    {
        DWORD ignored = 0;
        if (m_pipe && CancelIoEx(m_pipe.Get(), &m_overlapped))
        {
            GetOverlappedResult(m_pipe.Get(), &m_overlapped, &ignored, TRUE);
        }
    }

    HANDLE Connected() const noexcept { return m_connected.Get(); }

    Handle Take() { return std::move(m_pipe); }

  private:
    Handle m_pipe;
    Handle m_connected;
    OVERLAPPED m_overlapped{};
};

// The process at the other end of a pipe.
class PipePeer : public Peer
{
  public:
    explicit PipePeer(std::shared_ptr<PipeChannel> channel) : m_channel(std::move(channel)) {}

    void Send(ToProcess const& message) override { m_channel->Send(Encode(message)); }

  private:
    std::shared_ptr<PipeChannel> m_channel;
};

class Server
{
  public:
    explicit Server(Device const& device)
        : m_device(device), m_listener(std::make_unique<Listener>(device.PipeName())),
          m_stop(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
          m_platform(device, m_time, std::make_unique<WindowsProcessStarter>(), [this] { SetEvent(m_stop.Get()); })
    {
    }

    // Returns when the device is switched off or its folder is removed.
    void Run()
    {
        std::thread dispatcher([this] { m_platform.Dispatcher().Run(); });
        AcceptUntilStopped();
        m_platform.Dispatcher().PostAndWait([this] { m_platform.SwitchOff(); });
        m_platform.Dispatcher().Stop();
        dispatcher.join();
    }

  private:
    void AcceptUntilStopped()
    {
        constexpr DWORD pollMilliseconds = 500; // of the folder
        while (FolderExists(m_device.Home()))
        {
            HANDLE const handles[] = {m_stop.Get(), m_listener->Connected()};
            switch (WaitForMultipleObjects(ARRAYSIZE(handles), handles, FALSE, pollMilliseconds))
            {
            case WAIT_OBJECT_0 + 1:
                Accept();
                break;
            case WAIT_TIMEOUT:
                break;
            default:
                return;
            }
        }
    }

    void Accept()
    {
        auto const channel = PipeChannel::Open(m_listener->Take());
        m_listener = std::make_unique<Listener>(m_device.PipeName());
        auto const peer = std::make_shared<PipePeer>(channel);
        // The channel owns its handlers until it closes, and they own the channel.
        channel->Start(
            {[this, peer](std::string_view message) { m_platform.Received(peer, Decode<FromProcess>(message)); },
             [this, peer] { m_platform.Closed(peer); }});
    }

    Device const& m_device;
    std::unique_ptr<Listener> m_listener;
    Handle m_stop;
    SystemTime m_time;
    Platform m_platform;
};

} // namespace

void Serve(Device const& device)
{
    // A mutex, since Wine lets a second process create a pipe of the same name.
    Handle const serving(CreateMutexW(nullptr, FALSE, device.MutexName().c_str()));
    if (WaitForSingleObject(serving.Get(), 0) == WAIT_TIMEOUT)
    {
        return;
    }
    Server server(device);
    Handle const ready(CreateEventW(nullptr, TRUE, FALSE, device.ReadyEventName().c_str()));
    SetEvent(ready.Get());
    server.Run();
    // Without clean-up: connections may be in the middle of a message.
    ExitProcess(0);
}

} // namespace sim
