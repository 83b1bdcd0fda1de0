#include "simulator/testing/LocalDevice.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Words.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/testing/LimitedWait.h"

#include <algorithm>
#include <atomic>
#include <windows.h>
#include <winrt/base.h>

#include <roapi.h>

namespace sim
{

namespace
{

constexpr std::uint32_t appProcess = 1;
constexpr std::uint32_t desktopProgram = 0;

// In milliseconds: a busy machine may stop a test for longer than a real device's limits.
constexpr unsigned anHour = 3'600'000;
constexpr Limits neverReached{
    .task = anHour, .afterCancel = anHour, .idle = anHour, .suspending = anHour, .suspended = anHour};

std::atomic<LocalDevice*> currentDevice = nullptr;

std::wstring NewFolder()
{
    static std::atomic<unsigned> last = 0;
    wchar_t parent[MAX_PATH + 1];
    auto const length = GetTempPathW(ARRAYSIZE(parent), parent);
    auto const folder = std::wstring(parent, length) + L"velmo-local-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                        std::to_wstring(++last);
    MakeFolder(folder);
    return folder;
}

Package LocalPackage()
{
    Package package;
    package.manifest.name = L"Velmo.LocalDevice";
    package.manifest.publisher = L"CN=Velmo";
    package.manifest.version = L"1.0.0.0";
    package.manifest.applicationId = L"App";
    package.manifest.appServices = {LocalDevice::appServiceName};
    package.manifest.protocols = {L"velmo-notification", L"x"};
    package.manifest.mayRunFullTrust = true;
    package.manifest.desktopComponent = Manifest::DesktopComponent{L"Desktop.exe", {}};
    for (auto const* group : {L"LaunchHOV", L"CURIUpdated", L"NotificationReceived", L"Group"})
    {
        package.manifest.desktopComponent->groups.push_back({group, L"/of the group"});
    }
    return package;
}

// Desktop components that do nothing; the app is the test itself.
class LocalProcesses : public ProcessStarter
{
  public:
    void Listen(Ended) override {}

    StartedProcess Start(ProcessRequest const& request) override
    {
        constexpr unsigned long firstDesktopProcess = 1000;
        auto const isDesktop = request.executable.ends_with(L"Desktop.exe");
        return isDesktop ? StartedProcess{0, firstDesktopProcess + ++m_count} : StartedProcess{ERROR_ACCESS_DENIED, 0};
    }

    void Kill(unsigned long, unsigned long) override {}
    bool Suspend(unsigned long) override { return true; } // the threads are the test's
    void Resume(unsigned long) override {}

  private:
    unsigned long m_count = 0;
};

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

// Sends requests as the command line does, and receives all events.
class LocalDevice::CommandLine : public Peer
{
  public:
    void Send(ToProcess const& message) override
    {
        std::lock_guard const lock(m_mutex);
        if (auto const* const happened = std::get_if<EventHappened>(&message))
        {
            m_events.push_back(happened->event);
        }
        else if (auto const* const answer = std::get_if<Answer>(&message))
        {
            m_answers[answer->number] = answer->content;
        }
        m_changed.notify_all();
    }

    std::uint32_t NextNumber()
    {
        std::lock_guard const lock(m_mutex);
        return ++m_lastNumber;
    }

    AnyAnswer WaitForAnswer(std::uint32_t number)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_answers.contains(number); });
        return m_answers.extract(number).mapped();
    }

    std::vector<Event> Events() const
    {
        std::lock_guard const lock(m_mutex);
        return m_events;
    }

    Event WaitForEvent(std::wstring_view kind, std::size_t number)
    {
        std::unique_lock lock(m_mutex);
        auto found = m_events.end();
        auto const isThere = [&] {
            auto rest = number;
            found =
                std::ranges::find_if(m_events, [&](Event const& event) { return event.kind == kind && --rest == 0; });
            return found != m_events.end();
        };
        WaitLimited(lock, m_changed, isThere, [&] {
            return L"event " + std::to_wstring(number) + L" of " + std::wstring(kind) + L", among" + Texts(m_events);
        });
        return *found;
    }

  private:
    mutable std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    std::vector<Event> m_events;
    std::map<std::uint32_t, AnyAnswer> m_answers;
    std::uint32_t m_lastNumber = 0;
};

LocalDevice::LocalDevice()
    : m_device(NewFolder()),
      m_platform(
          m_device, m_time, std::make_unique<LocalProcesses>(), [] {}, neverReached, Platform::JournalFile::None),
      m_work([this] { m_platform.Dispatcher().Run(); }), m_commandLine(std::make_shared<CommandLine>()),
      m_app(std::make_shared<LocalProcess>(m_device, m_platform))
{
    OnPlatform([this] {
        m_platform.Register(LocalPackage());
        m_platform.ExpectApp(appProcess);
    });
    m_app->Start(appProcess);
    m_callers.push_back(NewCaller());
    m_platform.Received(m_commandLine, Follow{});
    SetProcessHost(m_app);
    currentDevice = this;
    // Factories cached by an earlier test would bypass this one's faults.
    winrt::clear_factory_cache();
    winrt_activation_handler = GetLocalFactory;
}

LocalDevice::~LocalDevice()
{
    // Pending requests are answered while there is still a host.
    m_app->CloseConnection();
    KillCaller();
    WaitUntilQuiet();
    winrt_activation_handler = nullptr;
    winrt::clear_factory_cache();
    m_app->Router().Close();
    for (auto const& caller : m_callers)
    {
        caller->Router().Close();
    }
    currentDevice = nullptr;
    SetProcessHost(nullptr);
    WaitUntilQuiet();
    m_app->Detach();
    std::ranges::for_each(m_callers, &LocalProcess::Detach);
    m_platform.Dispatcher().Stop();
    m_work.join();
    Remove(m_device.Home());
}

LocalDevice& LocalDevice::Current() noexcept
{
    return *currentDevice;
}

void LocalDevice::SetFault(std::wstring_view words)
{
    auto const fault = ParseFault(SplitWords(words));
    if (fault.call.find(L'.') == std::wstring::npos)
    {
        winrt::clear_factory_cache(); // a cached factory would bypass the fault
    }
    Command(sim::SetFault{fault});
}

std::uint32_t LocalDevice::ActivateTask(std::wstring name, Trigger trigger, std::wstring payload)
{
    constexpr wchar_t unregistered[] = L"00000000-0000-0000-0000-000000000000";
    return StartInstance(
        TaskStart{.taskId = unregistered, .task = std::move(name), .trigger = trigger, .payload = std::move(payload)});
}

std::uint32_t LocalDevice::ActivateAppService()
{
    constexpr std::uint32_t unknownConnection = UINT32_MAX;
    return StartInstance(ServiceStart{.connection = unknownConnection, .service = appServiceName, .callerFamily = {}});
}

std::uint32_t LocalDevice::StartInstance(TaskInstances::Content content)
{
    std::optional<std::uint32_t> instance;
    OnPlatform([&] { instance = m_platform.StartInstance(std::move(content)); });
    return instance.value_or(0);
}

std::vector<std::wstring> LocalDevice::TaskNames()
{
    std::vector<std::wstring> names;
    OnPlatform([&] { names = m_platform.TaskNames(); });
    return names;
}

void LocalDevice::KillCaller()
{
    auto caller = NewCaller();
    std::lock_guard const lock(m_mutex);
    m_callers.back()->CloseConnection();
    m_callers.push_back(std::move(caller));
}

std::shared_ptr<LocalProcess> LocalDevice::Caller() const
{
    std::lock_guard const lock(m_mutex);
    return m_callers.back();
}

void LocalDevice::WaitUntilQuiet()
{
    std::uint64_t before = 0;
    do
    {
        before = m_platform.Dispatcher().WaitUntilIdle();
        m_app->WaitForWork();
        std::unique_lock lock(m_mutex);
        auto const callers = m_callers;
        lock.unlock();
        std::ranges::for_each(callers, &LocalProcess::WaitForWork);
    } while (m_platform.Dispatcher().WaitUntilIdle() != before);
}

std::size_t LocalDevice::UnfetchedLaunches()
{
    m_platform.Dispatcher().WaitUntilIdle();
    return m_app->UnfetchedLaunches();
}

bool LocalDevice::HasExited()
{
    return std::ranges::count(Reports(), L"exit-announced", &Event::kind) > 0;
}

std::vector<Event> LocalDevice::Reports()
{
    m_platform.Dispatcher().WaitUntilIdle();
    return m_commandLine->Events();
}

Event LocalDevice::WaitForReport(std::wstring_view kind, std::size_t number)
{
    return m_commandLine->WaitForEvent(kind, number);
}

Shown LocalDevice::Command(AnyRequest request)
{
    auto const number = m_commandLine->NextNumber();
    m_platform.Received(m_commandLine, Request{number, std::move(request)});
    auto const answer = m_commandLine->WaitForAnswer(number);
    if (auto const* const refused = std::get_if<Refused>(&answer))
    {
        throw Error(refused->reason);
    }
    return std::get<Shown>(answer);
}

std::shared_ptr<LocalProcess> LocalDevice::NewCaller()
{
    auto caller = std::make_shared<LocalProcess>(m_device, m_platform);
    caller->Start(desktopProgram);
    return caller;
}

} // namespace sim
