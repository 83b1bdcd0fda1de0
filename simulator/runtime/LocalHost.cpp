#include "simulator/runtime/LocalHost.h"

#include "simulator/model/Handle.h"
#include "simulator/model/Text.h"
#include "simulator/model/Words.h"
#include "simulator/runtime/LimitedWait.h"
#include "simulator/runtime/RunOnPool.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <windows.h>
#include <winrt/base.h>

#include <roapi.h>

namespace sim
{

namespace
{

constexpr wchar_t instancePrefix[] = L"local-";

std::int32_t __stdcall GetLocalFactory(void* classId, winrt::guid const& id, void** factory) noexcept
{
    std::wstring_view const name = reinterpret_cast<winrt::hstring const&>(classId);
    if (!HasClass(name))
    {
        return RoGetActivationFactory(static_cast<HSTRING>(classId), reinterpret_cast<GUID const&>(id), factory);
    }
    *factory = nullptr;
    winrt::Windows::Foundation::IInspectable object;
    auto const result = GetFactory(name, winrt::put_abi(object));
    return result < 0 ? result : static_cast<std::int32_t>(object.as(id, factory));
}

std::wstring Texts(std::vector<Event> const& events)
{
    std::wstring text;
    for (auto const& event : events)
    {
        text += L"\n  " + event.Text();
    }
    return text;
}

} // namespace

void LocalHost::Launch::Complete(std::int32_t result) const
{
    Handle const done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    RunOnPool([&] {
        launched(result);
        SetEvent(done.Get());
    });
    WaitForSingleObject(done.Get(), INFINITE);
}

LocalHost::LocalHost(Limits limits)
    : m_platform(std::make_unique<LocalPlatform>(
          LocalPlatform::App{[this](ActivationKind kind, std::vector<std::wstring> more) {
                                 m_activations.Add({L"", kind, L"", std::move(more)});
                             },
                             [this] { End(); },
                             [this](std::wstring kind, std::vector<std::wstring> details) {
                                 Report(std::move(kind), std::move(details));
                             }},
          limits))
{
    SetCurrentHost(this);
    // Factories kept from an earlier test would not meet this one's faults.
    winrt::clear_factory_cache();
    winrt_activation_handler = GetLocalFactory;
}

LocalHost::~LocalHost()
{
    // Whoever still waits for an answer gets one while there is a host to work with.
    m_platform->AppGone();
    m_platform->CallerGone();
    m_platform->WaitUntilQuiet();
    winrt_activation_handler = nullptr;
    winrt::clear_factory_cache();
    SetCurrentHost(nullptr);
}

void LocalHost::SetFault(std::wstring_view words)
{
    auto fault = ParseFault(SplitWords(words));
    if (fault.call.find(L'.') == std::wstring::npos)
    {
        winrt::clear_factory_cache(); // a factory that is kept would not be asked for
    }
    std::lock_guard const lock(m_mutex);
    m_faults.Set(std::move(fault));
}

void LocalHost::ClearFaults()
{
    std::lock_guard const lock(m_mutex);
    m_faults.Clear();
}

void LocalHost::SpareThisThread()
{
    std::lock_guard const lock(m_mutex);
    m_sparedThreads.insert(GetCurrentThreadId());
}

void LocalHost::Activate(ActivationKind kind, std::wstring argument)
{
    m_activations.Add({L"", kind, std::move(argument), {}});
}

std::wstring LocalHost::ActivateTask(std::wstring name, std::wstring trigger, std::wstring payload)
{
    auto const instance = NextInstance();
    constexpr wchar_t unregistered[] = L"00000000-0000-0000-0000-000000000000";
    m_activations.Add({L"",
                       ActivationKind::BackgroundTask,
                       L"",
                       {instance, unregistered, std::move(name), std::move(trigger), std::move(payload)}});
    return instance;
}

std::wstring LocalHost::ActivateAppService()
{
    auto const instance = NextInstance();
    m_activations.Add({L"", ActivationKind::AppService, L"", {instance, instance, LocalPlatform::appServiceName, L""}});
    return instance;
}

void LocalHost::Cancel(std::wstring const& instance, int reason)
{
    m_platform->Say({L"cancel", instance, L"", std::to_wstring(reason)});
}

void LocalHost::Push(std::wstring const& payload)
{
    m_platform->WithServices([&](Services& services) { services.Push(payload); });
}

void LocalHost::AdvanceClock(std::int64_t minutes)
{
    m_platform->WithServices([&](Services& services) { services.AdvanceClock(minutes); });
}

void LocalHost::RevokeChannel()
{
    m_platform->WithServices([&](Services& services) { services.RevokeChannel(); });
}

void LocalHost::ReplaceChannel(std::wstring uri)
{
    m_platform->WithServices([&](Services& services) { services.ReplaceChannel(std::move(uri)); });
}

void LocalHost::CancelTasks(int reason)
{
    m_platform->WithServices([&](Services& services) { services.CancelTasks(reason); });
}

void LocalHost::KillCaller()
{
    m_platform->CallerGone();
}

void LocalHost::WaitUntilQuiet()
{
    m_platform->WaitUntilQuiet();
}

std::vector<unsigned> LocalHost::Completions() const
{
    return m_deferrals.All();
}

void LocalHost::WaitForCompletions(std::size_t request, unsigned count) const
{
    m_deferrals.WaitFor(request, count);
}

void LocalHost::SetWindowContent(IInspectable content)
{
    std::lock_guard const lock(m_mutex);
    m_windowContent = std::move(content);
}

void LocalHost::SetPackageFolder(std::wstring folder)
{
    std::lock_guard const lock(m_mutex);
    m_packageFolder = std::move(folder);
}

void LocalHost::End()
{
    m_activations.End();
}

LocalHost::Launch LocalHost::WaitForLaunch()
{
    std::unique_lock lock(m_mutex);
    WaitLimited(
        lock, m_launchCame, [&] { return !m_launches.empty(); },
        [&] { return L"a launch of the desktop component, among the reports" + Texts(m_reports); });
    auto launch = std::move(m_launches.front());
    m_launches.pop_front();
    return launch;
}

std::size_t LocalHost::UnfetchedLaunches() const
{
    std::lock_guard const lock(m_mutex);
    return m_launches.size();
}

bool LocalHost::HasExited() const
{
    std::lock_guard const lock(m_mutex);
    return m_hasExited;
}

std::optional<std::int32_t> LocalHost::Failure() const
{
    std::lock_guard const lock(m_mutex);
    return m_failure;
}

std::vector<Event> LocalHost::Reports() const
{
    std::lock_guard const lock(m_mutex);
    return m_reports;
}

Event LocalHost::WaitForReport(std::wstring_view kind, std::size_t number) const
{
    std::unique_lock lock(m_mutex);
    auto found = m_reports.end();
    auto const isThere = [&] {
        auto rest = number;
        found = std::ranges::find_if(m_reports, [&](Event const& event) { return event.kind == kind && --rest == 0; });
        return found != m_reports.end();
    };
    WaitLimited(lock, m_reported, isThere, [&] {
        return L"report " + std::to_wstring(number) + L" of " + std::wstring(kind) + L", among" + Texts(m_reports);
    });
    return *found;
}

std::optional<Activation> LocalHost::NextActivation()
{
    auto activation = m_activations.Next();
    if (!activation)
    {
        m_platform->AppGone();
    }
    else if (!activation->more.empty())
    {
        m_platform->Taken(activation->more.front());
    }
    return activation;
}

void LocalHost::Exit()
{
    {
        std::lock_guard const lock(m_mutex);
        m_hasExited = true;
    }
    m_activations.End();
}

void LocalHost::Fail(std::int32_t result)
{
    {
        std::lock_guard const lock(m_mutex);
        m_failure = result;
    }
    m_activations.End();
}

std::optional<Fault> LocalHost::TakeFault(std::wstring_view call)
{
    std::lock_guard const lock(m_mutex);
    return m_sparedThreads.contains(GetCurrentThreadId()) ? std::nullopt : m_faults.Take(call);
}

void LocalHost::LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                              Launched launched)
{
    std::lock_guard const lock(m_mutex);
    m_launches.push_back({application, group, std::move(launched)});
    m_launchCame.notify_all();
}

IInspectable LocalHost::WindowContent()
{
    std::lock_guard const lock(m_mutex);
    return m_windowContent;
}

void LocalHost::Report(std::wstring kind, std::vector<std::wstring> details)
{
    std::lock_guard const lock(m_mutex);
    m_reports.push_back({Now(), std::move(kind), std::move(details)});
    m_reported.notify_all();
}

Message LocalHost::Ask(Message const& request)
{
    return m_platform->Ask(request);
}

void LocalHost::AskLater(Message const& request, std::function<void(Message)> answered)
{
    m_platform->AskLater(request, std::move(answered));
}

void LocalHost::Tell(Message const& words)
{
    if (words.front() == L"task-completed" && StartsWith(words[1], instancePrefix))
    {
        Report(words.front(), {sim::Detail(L"instance", words[1])});
        return;
    }
    m_platform->Tell(words);
}

void LocalHost::Listen(std::function<void(Message const&)> listener)
{
    m_platform->Listen(std::move(listener));
}

std::wstring LocalHost::DataFolder()
{
    return m_platform->DataFolder();
}

std::wstring LocalHost::PackageFolder()
{
    std::lock_guard const lock(m_mutex);
    if (m_packageFolder.empty())
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
    return m_packageFolder;
}

void LocalHost::DeferralTaken(std::wstring const& request)
{
    m_deferrals.Taken(request);
}

void LocalHost::DeferralCompleted(std::wstring const& request)
{
    m_deferrals.Completed(request);
}

// Unlike those of the services, which are numbers.
std::wstring LocalHost::NextInstance()
{
    std::lock_guard const lock(m_mutex);
    return instancePrefix + std::to_wstring(++m_lastInstance);
}

} // namespace sim
