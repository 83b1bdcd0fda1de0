#include "simulator/runtime/ProcessHost.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/protocol/BrokerPipe.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/PipeChannel.h"

#include <windows.h>

namespace sim
{

namespace
{

constexpr UINT stowedException = 0xC000027B; // the exit code of a process whose app failed

class PipeLink : public PlatformLink
{
  public:
    explicit PipeLink(std::shared_ptr<PipeChannel> channel) : m_channel(std::move(channel)) {}

    bool Send(FromProcess const& message) override
    {
        auto const bytes = Encode(message);
        if (bytes.size() > largestMessage)
        {
            return false;
        }
        m_channel->Send(bytes);
        m_channel->Flush();
        return true;
    }

  private:
    std::shared_ptr<PipeChannel> m_channel;
};

} // namespace

std::wstring RuntimeModulePath()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<wchar_t const*>(&RuntimeModulePath), &module);
    return ModulePath(module);
}

std::shared_ptr<ProcessHost> ProcessHost::Connected()
try
{
    auto const device = Device::FromEnvironment();
    auto const channel = PipeChannel::Open(NeedBroker(device, ParentOf(RuntimeModulePath()) + L"\\sim.exe"));
    auto host = std::make_shared<ProcessHost>(device);
    channel->Start({[host](std::string_view message) { host->Received(Decode<ToProcess>(message)); },
                    [host] { host->Disconnected(); }});
    try
    {
        host->Connect(std::make_shared<PipeLink>(channel), GetCurrentProcessId());
        return host;
    }
    catch (winrt::hresult_error const&)
    {
        channel->Close();
        throw;
    }
}
catch (Error const& error)
{
    throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE), error.Message());
}

void ProcessHost::Fail(std::int32_t)
{
    TerminateProcess(GetCurrentProcess(), stowedException);
    __builtin_unreachable();
}

void ProcessHost::PlatformLost()
{
    TerminateProcess(GetCurrentProcess(), 1);
}

} // namespace sim
