#include "explore/faults/Stage.h"

#include "app/App.h"
#include "service/NotificationAppService.h"
#include "simulator/protocol/Event.h"
#include "tests/support/Files.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Storage.h>

using VelmoNotificationClient::NotificationAppService;
using winrt::Windows::UI::Xaml::Application;

WRAP(SleepCall, Sleep);
WRAP(WaitCall, WaitForSingleObject);

namespace explore::faults
{

namespace
{

// Longer than a busy machine stops a thread.
constexpr std::chrono::seconds restLimit(20);

// Only the app's own waits are that long: not those of libraries, and not the log's for its mutex.
constexpr DWORD longSleep = 1000;
constexpr DWORD longWait = 10'000;

} // namespace

Stage::Stage()
    : m_sleep([this](auto system, DWORD milliseconds) {
          if (milliseconds < longSleep)
          {
              return system(milliseconds);
          }
          m_waits.push_back(std::to_wstring(milliseconds));
          Park(Place::Sleep);
      }),
      m_wait([this](auto system, HANDLE handle, DWORD milliseconds) {
          if (milliseconds < longWait || milliseconds == INFINITE)
          {
              return system(handle, milliseconds);
          }
          m_waits.push_back(std::to_wstring(milliseconds));
          Park(Place::Registration);
          return system(handle, 0);
      })
{
    device.ExemptThisThread(); // it is everybody but the app
}

Stage::~Stage() // NOLINT(bugprone-exception-escape): a failure in it ends the process, which is reported
{
    device.WatchCalls({});
    device.End();
    Settle();
    if (m_main.joinable())
    {
        m_main.join();
    }
    m_helpers.clear();
    Settle();
    NotificationAppService::appServiceConnection.Set(nullptr);
    NotificationAppService::serviceDeferral.Set(nullptr);
}

void Stage::Start()
{
    m_main = std::thread([this] {
        try
        {
            Application::Start([](auto&&) { winrt::make<VelmoNotificationClient::App>(); });
        }
        catch (winrt::hresult_error const& error)
        {
            m_startResult = error.code();
        }
        catch (std::bad_alloc const&)
        {
            m_startResult = E_OUTOFMEMORY;
        }
        m_hasEnded = true;
    });
}

void Stage::AwaitStart()
{
    while (!IsUiThreadCalm())
    {
        SleepEx(0, FALSE);
    }
}

void Stage::AwaitActivation(std::size_t number)
{
    device.WaitForReport(L"activated", number);
}

void Stage::Settle()
{
    do
    {
        Rest();
    } while (CompleteLaunch() || CompleteMessage() || Release(Place::Sleep) || Release(Place::Registration));
}

void Stage::EndOperationsAtOnce()
{
    m_endsAtOnce = true;
    for (auto const& helper : m_helpers)
    {
        helper->AnswerAtOnce();
    }
}

void Stage::DoBeforeNext(void (*action)(Stage&))
{
    {
        std::lock_guard const lock(m_mutex);
        ++m_parked[Place::Action];
    }
    action(*this);
    AwaitCalm(true);
    m_awaitsOthers = true;
    std::lock_guard const lock(m_mutex);
    --m_parked[Place::Action];
}

void Stage::AwaitOthersIfAsked()
{
    if (m_awaitsOthers.exchange(false))
    {
        DoBeforeNext([](Stage&) {});
        m_awaitsOthers = false;
    }
}

void Stage::Park(Place place)
{
    std::unique_lock lock(m_mutex);
    ++m_parked[place];
    m_released.wait(lock, [&] { return m_mayGo[place] > 0; });
    --m_mayGo[place];
}

bool Stage::Release(Place place)
{
    std::lock_guard const lock(m_mutex);
    if (m_parked[place] == 0)
    {
        return false;
    }
    --m_parked[place];
    ++m_mayGo[place];
    m_released.notify_all();
    return true;
}

// isActing: on a thread of the app, which all others wait for.
void Stage::AwaitCalm(bool isActing)
{
    auto const limit = std::chrono::steady_clock::now() + restLimit;
    for (;;)
    {
        auto const before = Progress();
        if (IsCalm(isActing) && Progress() == before)
        {
            return;
        }
        if (m_endsAtOnce && CompleteLaunch())
        {
            continue;
        }
        if (std::chrono::steady_clock::now() > limit)
        {
            auto const [begun, unfinished] = test::PoolWatch::Count();
            throw Stuck("a thread comes to no rest: " + std::to_string(unfinished) + " of " + std::to_string(begun) +
                        " callbacks on the pool, UI thread " + (IsUiThreadCalm() ? "calm" : "at work"));
        }
        SleepEx(0, FALSE);
    }
}

bool Stage::IsCalm(bool isActing)
{
    std::lock_guard const lock(m_mutex);
    auto const count = [&](Place place) {
        auto const found = m_parked.find(place);
        return found == m_parked.end() ? 0U : found->second;
    };
    auto const acting = count(Place::Action);
    if (acting > 0 && !isActing)
    {
        return false;
    }
    // The acting thread is one of the pool, or the UI thread.
    auto const parked = count(Place::Registration) + acting;
    auto const unfinished = static_cast<unsigned>(test::PoolWatch::Count().unfinished);
    auto const isUiCalm = count(Place::Sleep) > 0 || IsUiThreadCalm();
    return isUiCalm ? unfinished == parked : acting > 0 && unfinished + 1 == parked;
}

// An app that ends is not, before it has.
bool Stage::IsUiThreadCalm()
{
    return m_hasEnded || !m_main.joinable() ||
           (test::WaitCall::Original(device.UiThreadIdle(), 0) == WAIT_OBJECT_0 && !device.HasExited() &&
            !device.Failure());
}

bool Stage::CompleteLaunch()
{
    if (device.UnfetchedLaunches() == 0)
    {
        return false;
    }
    auto const launch = device.WaitForLaunch();
    {
        std::lock_guard const lock(m_mutex);
        m_launches.push_back(launch.group.value_or(L"(none)"));
    }
    launch.Complete();
    return true;
}

bool Stage::CompleteMessage()
{
    return std::ranges::any_of(m_helpers, [](auto const& helper) { return helper->AnswerMessage(); });
}

// Grows with all that begins on the platform and on the pool.
std::uint64_t Stage::Progress()
{
    auto const posted = device.WaitForPlatform();
    return posted + static_cast<std::uint64_t>(test::PoolWatch::Count().begun);
}

Texts Stage::Lines() const
{
    Texts lines;
    for (auto const& fields : LineFields())
    {
        lines.push_back(fields[1] + L" " + fields[5] + L" " + fields.back());
    }
    return lines;
}

Texts Stage::LineThreads() const
{
    Texts threads;
    for (auto const& fields : LineFields())
    {
        threads.push_back(fields[8]);
    }
    return threads;
}

std::vector<Texts> Stage::LineFields() const
{
    constexpr std::size_t count = 10;
    auto const path = temporary / L"Tessaline\\HOV\\KZEB.log";
    std::vector<Texts> lines;
    for (auto const& line : test::FileExists(path) ? test::ReadLines(path) : Texts())
    {
        auto const& fields = lines.emplace_back(test::Split(line, L" | "));
        if (fields.size() != count)
        {
            throw std::runtime_error("a torn line: " + winrt::to_string(line));
        }
    }
    return lines;
}

Outcome Stage::Look()
{
    Outcome outcome;
    for (std::size_t number = 0; number < m_helpers.size(); ++number)
    {
        for (auto const& message : m_helpers[number]->Messages())
        {
            outcome.messages.push_back(std::to_wstring(number + 1) + L": " + message);
        }
        std::ranges::copy(m_helpers[number]->Answers(), std::back_inserter(outcome.answers));
    }
    outcome.completions = device.Completions();
    auto const reports = device.Reports();
    outcome.tasksEnded = static_cast<unsigned>(std::ranges::count(reports, L"task-completed", &sim::Event::kind));
    outcome.tasks = device.TaskNames();
    {
        std::lock_guard const lock(m_mutex);
        outcome.launches = m_launches;
        outcome.waits = m_waits;
    }
    if (m_startResult != 0)
    {
        outcome.end = End::NotStarted;
        outcome.code = m_startResult;
    }
    else if (auto const failure = device.Failure())
    {
        outcome.end = End::Failed;
        outcome.code = *failure;
    }
    else if (device.HasExited())
    {
        outcome.end = End::Exited;
    }
    return outcome;
}

} // namespace explore::faults
