#pragma once
#include "tests/flow/AppFlow.h"
#include "tests/flow/Lines.h"
#include "tests/flow/LogRecorder.h"
#include "tests/flow/TestHelper.h"
#include "tests/support/WrappedSystem.h"

#include <atomic>
#include <memory>
#include <winrt/Windows.Storage.h>

namespace test
{

// The application with a desktop helper connected to its service. The recorded lines are those after the connection.
class ServiceFlow : public AppFlow
{
  protected:
    ServiceFlow();
    ~ServiceFlow() override;

    // Waits until the log has all expected lines, ends the app, and compares: the common lines first, then those of
    // each thread in its own order, the threads interleaved in any way.
    void ExpectLog(Lines const& common, Lines const& oneThread = {}, Lines const& otherThread = {},
                   std::source_location where = std::source_location::current());

    // In this process only the events of a registration reset automatically and have no attributes.
    static bool IsOfRegistration(BOOL manualReset) { return !manualReset; }

    // Waits for that many waits for a registration of background tasks; returns them, in milliseconds.
    std::vector<DWORD> RegistrationWaits(std::size_t count) const;

    // Ends the wait for a registration of background tasks at once, as after its 60 s, which do not elapse otherwise.
    void EndRegistrationWait() { SetEvent(m_registrationWaitOver.Get()); }

    // Makes that wait fail.
    void FailRegistrationWait() { m_registrationWaitFails = true; }

    // The number of completions of each request's deferral, in the order in which the deferrals were taken.
    std::vector<unsigned> Completions() const { return host.Completions(); }

    // The app's stored URI as a helper shows it; empty when none is stored.
    static std::wstring StoredUri();
    static void StoreUri(winrt::Windows::Foundation::IInspectable const& value);

    // The names of the registered background tasks, in the order of registration.
    Lines TaskNames() { return Lines(host.TaskNames()); }

    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<TestHelper> helper;

  private:
    HANDLE Created(HANDLE event);
    bool IsForRegistration(HANDLE waited) const;
    DWORD WaitForRegistration(HANDLE registered, DWORD milliseconds);

    zant::UniqueHandle m_registrationWaitOver;
    std::atomic<bool> m_registrationWaitFails = false;
    mutable winrt::slim_mutex m_eventsLock; // not a std::mutex: its waits would take this lock
    std::vector<HANDLE> m_registrationEvents;
    mutable std::mutex m_mutex; // guards the next two
    mutable std::condition_variable m_waitsChanged;
    std::vector<DWORD> m_registrationWaits; // in milliseconds
    CreateEventCall m_createEvent;
    WaitCall m_wait;
};

// The first lines of each request.
Lines RequestLines();

// What a request says for each registered task that it removes.
std::wstring TaskRemoved();

} // namespace test
