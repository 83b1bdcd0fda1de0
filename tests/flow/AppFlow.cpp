#include "tests/flow/AppFlow.h"

#include "simulator/testing/LimitedWait.h"
#include "tests/flow/Lines.h"
#include "tests/support/Files.h"

#include <algorithm>

using winrt::Windows::UI::Xaml::Application;

WRAP(SleepCall, Sleep);

namespace test
{

namespace
{

constexpr auto limitMilliseconds = static_cast<DWORD>(std::chrono::milliseconds(sim::waitLimit).count());

} // namespace

AppFlow::AppFlow()
    : m_ended(CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_waiting(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_waitMayEnd(CreateSemaphoreW(nullptr, 0, LONG_MAX, nullptr)), m_sleep([this](auto system, DWORD milliseconds) {
          if (milliseconds < 1000) // the thread library's, between two looks at a lock
          {
              system(milliseconds);
              return;
          }
          waits.push_back(milliseconds);
          SetEvent(m_waiting.Get());
          WaitForSingleObject(m_waitMayEnd.Get(), INFINITE);
      })
{
}

AppFlow::~AppFlow()
{
    host.End();
    EndWait();
    JoinMain();
    PoolWatch::WaitUntilIdle();
}

void AppFlow::JoinMain()
{
    if (m_main.joinable())
    {
        if (!TryWaitForEnd())
        {
            ADD_FAILURE() << EndIsMissing().what();
        }
        m_main.join(); // the watchdog ends a test that hangs here
    }
}

bool AppFlow::TryWaitForEnd() const
{
    return WaitForSingleObject(m_ended.Get(), limitMilliseconds) == WAIT_OBJECT_0;
}

std::runtime_error AppFlow::EndIsMissing() const
{
    return sim::Missing(L"the app's end, after" + Shown(Messages()));
}

void AppFlow::Start()
{
    m_main = std::thread([this] {
        try
        {
            Application::Start([this](auto&&) { app = winrt::make_self<VelmoNotificationClient::App>()->get_weak(); });
        }
        catch (winrt::hresult_error const& error)
        {
            startResult = error.code();
        }
        SetEvent(m_ended.Get());
    });
}

void AppFlow::WaitForEnd()
{
    if (m_main.joinable())
    {
        if (!TryWaitForEnd())
        {
            throw EndIsMissing();
        }
        m_main.join();
    }
}

void AppFlow::RunToEnd()
{
    Start();
    WaitForEnd();
}

sim::LocalDevice::Launched AppFlow::WaitForLaunch()
{
    auto launch = host.WaitForLaunch();
    HANDLE const either[] = {m_waiting.Get(), host.UiThreadIdle()};
    if (WaitForMultipleObjects(2, either, FALSE, limitMilliseconds) == WAIT_TIMEOUT)
    {
        throw sim::Missing(L"the end of the activation that launches, after" + Shown(Messages()));
    }
    return launch;
}

std::size_t AppFlow::CountReports(std::wstring_view kind)
{
    auto const reports = host.Reports();
    return static_cast<std::size_t>(std::ranges::count(reports, kind, &sim::Event::kind));
}

std::vector<std::wstring> AppFlow::Messages() const
{
    std::vector<std::wstring> messages;
    for (auto const& line : ReadLines(LogPath()))
    {
        auto const fields = Split(line, L" | ");
        auto const& level = fields.at(1);
        auto const& category = fields.at(5);
        messages.push_back((level == L"[INFO]" ? L"" : level + L" ") +
                           (category == L"ZEBMain" ? L"" : category + L": ") + fields.back());
    }
    return messages;
}

} // namespace test
