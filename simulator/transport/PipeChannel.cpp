#include "simulator/transport/PipeChannel.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"

namespace sim
{

// A read or a write under way. It holds the channel, so that the channel outlives what the system writes into.
struct PipeChannel::Operation : OVERLAPPED
{
    explicit Operation(std::shared_ptr<PipeChannel> owner) : OVERLAPPED{}, channel(std::move(owner)) {}

    std::shared_ptr<PipeChannel> channel;
    std::string buffer;
    bool isRead = false;
};

std::shared_ptr<PipeChannel> PipeChannel::Open(Handle pipe)
{
    std::shared_ptr<PipeChannel> channel(new PipeChannel(std::move(pipe)));
    channel->m_io = CreateThreadpoolIo(channel->m_pipe.Get(), OnIo, nullptr, nullptr);
    if (!channel->m_io)
    {
        throw Error(L"cannot use the connection: " + SystemMessage(GetLastError()));
    }
    return channel;
}

PipeChannel::PipeChannel(Handle pipe) : m_pipe(std::move(pipe)) {}

PipeChannel::~PipeChannel()
{
    m_pipe = Handle(); // before its pool object
    if (m_io)
    {
        CloseThreadpoolIo(m_io);
    }
}

void PipeChannel::Start(Events events)
{
    m_events = std::move(events);
    Read();
}

void PipeChannel::Send(Message const& message)
{
    auto bytes = Encode(message);
    std::lock_guard const lock(m_mutex);
    if (m_broken)
    {
        return;
    }
    m_outgoing.push_back(std::move(bytes));
    if (m_outgoing.size() == 1)
    {
        WriteNext();
    }
}

void PipeChannel::Flush()
{
    std::unique_lock lock(m_mutex);
    m_written.wait(lock, [&] { return m_outgoing.empty(); });
}

void PipeChannel::Close()
{
    std::lock_guard const lock(m_mutex);
    Break();
    CancelIoEx(m_pipe.Get(), nullptr);
}

void PipeChannel::Read()
{
    constexpr std::size_t blockSize = 16384;
    auto operation = std::make_unique<Operation>(shared_from_this());
    operation->isRead = true;
    operation->buffer.resize(blockSize);
    bool reading = false;
    {
        // Together with the look at m_broken: else Close could find no read to cancel just before one begins.
        std::lock_guard const lock(m_mutex);
        reading = !m_broken && Begin(std::move(operation));
    }
    if (!reading)
    {
        ReadEnded(ERROR_BROKEN_PIPE, {});
    }
}

void PipeChannel::ReadEnded(ULONG error, std::string_view bytes)
{
    if (error == ERROR_SUCCESS && Deliver(bytes))
    {
        Read();
        return;
    }
    {
        std::lock_guard const lock(m_mutex);
        Break();
        m_pipe = Handle(); // the other end learns of it, and a write under way ends
    }
    auto const events = std::move(m_events); // let go of what they hold: nothing follows
    events.closed();
}

// False after gibberish: nothing that follows it can be understood.
bool PipeChannel::Deliver(std::string_view bytes)
try
{
    m_decoder.Add(bytes);
    while (auto message = m_decoder.Next())
    {
        m_events.received(std::move(*message));
    }
    return true;
}
catch (Error const&)
{
    return false;
}

void PipeChannel::WriteNext()
{
    auto operation = std::make_unique<Operation>(shared_from_this());
    operation->buffer = m_outgoing.front();
    if (!Begin(std::move(operation)))
    {
        Break();
    }
}

void PipeChannel::WriteEnded(ULONG error)
{
    std::lock_guard const lock(m_mutex);
    if (error != ERROR_SUCCESS)
    {
        Break();
    }
    if (m_broken)
    {
        return;
    }
    m_outgoing.pop_front();
    m_outgoing.empty() ? m_written.notify_all() : WriteNext();
}

void PipeChannel::Break()
{
    m_broken = true;
    m_outgoing.clear();
    m_written.notify_all();
}

bool PipeChannel::Begin(std::unique_ptr<Operation> operation)
{
    StartThreadpoolIo(m_io);
    auto* const data = operation->buffer.data();
    auto const size = static_cast<DWORD>(operation->buffer.size());
    auto const started = operation->isRead ? ReadFile(m_pipe.Get(), data, size, nullptr, operation.get())
                                           : WriteFile(m_pipe.Get(), data, size, nullptr, operation.get());
    if (!started && GetLastError() != ERROR_IO_PENDING)
    {
        CancelThreadpoolIo(m_io);
        return false;
    }
    static_cast<void>(operation.release()); // OnIo has it from here
    return true;
}

void PipeChannel::OnIo(PTP_CALLBACK_INSTANCE, void*, void* overlapped, ULONG error, ULONG_PTR size, PTP_IO)
{
    std::unique_ptr<Operation> const operation(static_cast<Operation*>(static_cast<OVERLAPPED*>(overlapped)));
    auto& channel = *operation->channel;
    if (operation->isRead)
    {
        channel.ReadEnded(error, std::string_view(operation->buffer).substr(0, size));
    }
    else
    {
        channel.WriteEnded(error);
    }
}

} // namespace sim
