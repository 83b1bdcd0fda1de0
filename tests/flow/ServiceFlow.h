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

// The application with a desktop helper connected to its service. The lines of a test are those that come after that.
class ServiceFlow : public AppFlow
{
  protected:
    ServiceFlow();
    ~ServiceFlow() override;

    // Runs until the log has as many lines as these threads write together, ends the app, and compares: first the
    // common lines, then those of each thread in its own order, the threads in any.
    void ExpectLog(Lines const& common, Lines const& oneThread = {}, Lines const& otherThread = {},
                   std::source_location where = std::source_location::current());

    // Of the events of this process only those of a registration reset automatically, without attributes.
    static bool IsOfRegistration(BOOL manualReset) { return !manualReset; }

    // The waits for a registration of background tasks, in milliseconds, once there are so many.
    std::vector<DWORD> RegistrationWaits(std::size_t count) const;

    // Ends the wait for a registration of background tasks as its 60 s do, at once. They are over only by this.
    void EndRegistrationWait() { SetEvent(m_registrationWaitOver.Get()); }

    // Instead of that wait: one that fails.
    void FailRegistrationWait() { m_registrationWaitFails = true; }

    // How often the deferrals of requests were completed, in the order in which they were taken.
    std::vector<unsigned> Completions() const { return host.Completions(); }

    // The app's stored URI as a helper shows it; empty when there is none.
    static std::wstring StoredUri();
    static void StoreUri(winrt::Windows::Foundation::IInspectable const& value);

    // The names of the registered background tasks, in the order of registration.
    static Lines TaskNames();

    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<TestHelper> helper;

  private:
    HANDLE Created(HANDLE event);
    bool IsForRegistration(HANDLE waited) const;
    DWORD WaitForRegistration(HANDLE registered, DWORD milliseconds);

    zant::UniqueHandle m_registrationWaitOver;
    std::atomic<bool> m_registrationWaitFails = false;
    mutable winrt::slim_mutex m_eventsLock; // not a std::mutex, whose waits are calls that take this lock
    std::vector<HANDLE> m_registrationEvents;
    mutable std::mutex m_mutex; // over the next two
    mutable std::condition_variable m_waitsChanged;
    std::vector<DWORD> m_registrationWaits; // in milliseconds
    CreateEventCall m_createEvent;
    WaitCall m_wait;
};

// The lines that each request begins with.
Lines RequestLines();

} // namespace test
