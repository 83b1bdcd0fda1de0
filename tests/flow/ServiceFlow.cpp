#include "tests/flow/ServiceFlow.h"

#include "service/NotificationAppService.h"
#include "simulator/testing/LimitedWait.h"

#include <algorithm>
#include <numeric>

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>

using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Storage;
using VelmoNotificationClient::NotificationAppService;

WRAP(CreateEventCall, CreateEventW);
WRAP(WaitCall, WaitForSingleObject);

namespace test
{

namespace
{

constexpr wchar_t uriKey[] = L"CURI";

} // namespace

Lines RequestLines()
{
    return {Info(L"Inside OnRequestReceived to process appservice request from Win32 App"),
            Info(L"Acquired deferral to complete app service request")};
}

std::wstring TaskRemoved()
{
    return Info(L"Background task found going to unregister it");
}

ServiceFlow::ServiceFlow()
    : m_registrationWaitOver(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_createEvent([this](auto system, auto attributes, BOOL manual, BOOL initial, auto name) {
          auto* const event = system(attributes, manual, initial, name);
          return IsOfRegistration(manual) ? Created(event) : event;
      }),
      m_wait([this](auto system, HANDLE handle, DWORD milliseconds) {
          return IsForRegistration(handle) ? WaitForRegistration(handle, milliseconds) : system(handle, milliseconds);
      })
{
    host.ExemptThisThread(); // it is the helper
    Start();
    helper = std::make_unique<TestHelper>();
    log = std::make_unique<LogRecorder>([this] {
        auto const completions = Completions();
        return std::accumulate(completions.begin(), completions.end(), 0u);
    });
}

ServiceFlow::~ServiceFlow()
{
    EndRegistrationWait();
    host.WaitUntilQuiet();
    host.End();
    JoinMain();
    helper.reset();
    host.WaitUntilQuiet();
    PoolWatch::WaitUntilIdle();
    log.reset(); // no thread logs any more
    // Class-wide: cleared so that each test starts without them.
    NotificationAppService::appServiceConnection.Set(nullptr);
    NotificationAppService::serviceDeferral.Set(nullptr);
}

void ServiceFlow::ExpectLog(Lines const& common, Lines const& oneThread, Lines const& otherThread,
                            std::source_location where)
{
    log->TryWaitForLines(common.size() + oneThread.size() + otherThread.size());
    host.WaitUntilQuiet();
    host.End();
    WaitForEnd();
    ExpectInterleaved(log->Lines(), {common, oneThread, otherThread}, where);
}

HANDLE ServiceFlow::Created(HANDLE event)
{
    winrt::slim_lock_guard const lock(m_eventsLock);
    m_registrationEvents.push_back(event);
    return event;
}

bool ServiceFlow::IsForRegistration(HANDLE waited) const
{
    winrt::slim_lock_guard const lock(m_eventsLock);
    return std::ranges::find(m_registrationEvents, waited) != m_registrationEvents.end();
}

std::vector<DWORD> ServiceFlow::RegistrationWaits(std::size_t count) const
{
    std::unique_lock lock(m_mutex);
    sim::WaitLimited(
        lock, m_waitsChanged, [&] { return m_registrationWaits.size() >= count; },
        [&] { return L"wait " + std::to_wstring(count) + L" for a registration, after" + Shown(log->Lines()); });
    return m_registrationWaits;
}

DWORD ServiceFlow::WaitForRegistration(HANDLE registered, DWORD milliseconds)
{
    {
        std::lock_guard const lock(m_mutex);
        m_registrationWaits.push_back(milliseconds);
        m_waitsChanged.notify_all();
    }
    if (m_registrationWaitFails)
    {
        return WAIT_FAILED;
    }
    HANDLE const either[] = {registered, m_registrationWaitOver.Get()};
    return WaitForMultipleObjects(2, either, FALSE, INFINITE) == WAIT_OBJECT_0 ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

std::wstring ServiceFlow::StoredUri()
{
    auto const value = ApplicationData::Current().LocalSettings().Values().Lookup(uriKey);
    return std::wstring(winrt::unbox_value_or<winrt::hstring>(value, L""));
}

void ServiceFlow::StoreUri(IInspectable const& value)
{
    ApplicationData::Current().LocalSettings().Values().Insert(uriKey, value);
}

} // namespace test
