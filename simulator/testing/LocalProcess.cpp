#include "simulator/testing/LocalProcess.h"

#include "simulator/base/Handle.h"
#include "simulator/runtime/CurrentHost.h"
#include "simulator/runtime/PoolWork.h"
#include "simulator/testing/LimitedWait.h"

#include <windows.h>

namespace sim
{

namespace
{

// The platform's end of a process's connection.
class LocalPeer : public Peer
{
  public:
    using Arrived = std::function<void(ToProcess const&)>;

    explicit LocalPeer(Arrived arrived) : m_arrived(std::move(arrived)) {}

    void Send(ToProcess const& message) override { m_arrived(message); }

  private:
    Arrived m_arrived;
};

} // namespace

// This process's end.
class LocalProcess::Link : public PlatformLink
{
  public:
    explicit Link(LocalProcess& process) : m_process(process) {}

    bool Send(FromProcess const& message) override
    {
        m_process.Sent(message);
        return true;
    }

  private:
    LocalProcess& m_process;
};

void LocalProcess::Launched::Complete(std::int32_t result) const
{
    auto given = answer;
    if (auto* const launched = std::get_if<DesktopLaunched>(&given.content); launched && launched->result == 0)
    {
        launched->result = result;
    }
    sim::Handle const done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    RunOnPool([&] {
        HostScope const scope(*process);
        process->Deliver(given);
        SetEvent(done.Get());
    });
    WaitForSingleObject(done.Get(), INFINITE);
}

LocalProcess::LocalProcess(Device const& device, Platform& platform)
    : Host(device, static_cast<unsigned>(std::chrono::milliseconds(waitLimit).count())), m_platform(&platform)
{
}

void LocalProcess::Detach()
{
    std::lock_guard const lock(m_mutex);
    m_platform = nullptr;
}

void LocalProcess::Start(std::uint32_t id)
{
    NewPeer(id);
    Connect(std::make_shared<Link>(*this), id);
}

void LocalProcess::CloseConnection()
{
    std::lock_guard const lock(m_mutex);
    if (m_platform)
    {
        m_platform->Closed(m_peer);
    }
}

void LocalProcess::ExemptThisThread()
{
    std::lock_guard const lock(m_mutex);
    m_exemptThreads.insert(GetCurrentThreadId());
}

void LocalProcess::WatchCalls(CallWatch watch)
{
    std::lock_guard const lock(m_mutex);
    m_callWatch = std::move(watch);
}

void LocalProcess::SetWindowContent(IInspectable content)
{
    std::lock_guard const lock(m_mutex);
    m_windowContent = std::move(content);
}

void LocalProcess::SetPackageFolder(std::wstring folder)
{
    std::lock_guard const lock(m_mutex);
    m_packageFolder = std::move(folder);
}

LocalProcess::Launched LocalProcess::WaitForLaunch()
{
    std::unique_lock lock(m_mutex);
    WaitLimited(
        lock, m_launchCame, [&] { return !m_launched.empty(); },
        [] { return std::wstring(L"a launch of the desktop component"); });
    auto launched = std::move(m_launched.front());
    m_launched.pop_front();
    return launched;
}

std::size_t LocalProcess::UnfetchedLaunches() const
{
    std::lock_guard const lock(m_mutex);
    return m_launched.size();
}

std::optional<std::int32_t> LocalProcess::Failure() const
{
    std::lock_guard const lock(m_mutex);
    return m_failure;
}

std::optional<Fault> LocalProcess::TakeFault(std::wstring_view call)
{
    CallWatch watch;
    {
        std::lock_guard const lock(m_mutex);
        if (m_exemptThreads.contains(GetCurrentThreadId()))
        {
            return std::nullopt;
        }
        watch = m_callWatch;
    }
    auto fault = watch ? watch(call) : std::nullopt;
    return fault ? fault : Host::TakeFault(call);
}

std::wstring LocalProcess::PackageFolder() const
{
    std::lock_guard const lock(m_mutex);
    if (m_packageFolder.empty())
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
    return m_packageFolder;
}

void LocalProcess::Fail(std::int32_t result)
{
    {
        std::lock_guard const lock(m_mutex);
        m_failure = result;
    }
    End();
}

IInspectable LocalProcess::WindowContent()
{
    std::lock_guard const lock(m_mutex);
    return m_windowContent;
}

// What the test does with the app's classes from now on belongs to another process of the package.
void LocalProcess::AppEnded()
{
    CloseConnection();
    std::uint32_t ended = 0;
    Platform* platform = nullptr;
    {
        std::lock_guard const lock(m_mutex);
        ended = m_id;
        platform = m_platform;
    }
    platform->Dispatcher().PostAndWait([platform, ended] {
        platform->ProcessEnded(ended, 0);
        platform->ExpectApp(ended + 1);
    });
    NewPeer(ended + 1);
    Tell(Hello{ended + 1});
}

void LocalProcess::NewPeer(std::uint32_t id)
{
    auto const weak = std::weak_ptr(std::static_pointer_cast<LocalProcess>(shared_from_this()));
    std::lock_guard const lock(m_mutex);
    m_id = id;
    m_peer = std::make_shared<LocalPeer>([weak](ToProcess const& message) {
        if (auto const process = weak.lock())
        {
            process->Arrived(message);
        }
    });
}

void LocalProcess::Sent(FromProcess const& message)
{
    std::lock_guard const lock(m_mutex);
    if (!m_platform)
    {
        return;
    }
    auto const* const request = std::get_if<Request>(&message);
    if (auto const* const launch = request ? std::get_if<LaunchDesktop>(&request->content) : nullptr)
    {
        m_launches.emplace(request->number, *launch);
    }
    m_platform->Received(m_peer, message);
}

void LocalProcess::Arrived(ToProcess const& message)
{
    if (auto const* const answer = std::get_if<Answer>(&message))
    {
        std::lock_guard const lock(m_mutex);
        if (auto const launch = m_launches.extract(answer->number))
        {
            auto const& [application, group] = launch.mapped();
            auto const self = std::static_pointer_cast<LocalProcess>(shared_from_this());
            m_launched.push_back({application, group, self, *answer});
            m_launchCame.notify_all();
            return;
        }
    }
    Received(message);
}

} // namespace sim
