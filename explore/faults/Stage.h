#pragma once
#include "explore/faults/Helper.h"
#include "explore/faults/model/Outcome.h"
#include "explore/faults/model/Way.h"
#include "simulator/testing/LocalDevice.h"
#include "tests/flow/PoolWatch.h"
#include "tests/support/LogTearDown.h"
#include "tests/support/UserTemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "utils/UniqueHandle.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace explore::faults
{

// A thread that comes to no rest.
struct Stuck : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// The app in this process on a device of its own. Its long waits last until everything else has come to rest, and so do
// the operations that others end: launches of the desktop component, then messages to helpers. One after the other:
// what happens does not depend on how threads are scheduled.
class Stage
{
  public:
    Stage();
    Stage(Stage const&) = delete;
    Stage& operator=(Stage const&) = delete;
    ~Stage();

    // The application object is constructed, on a thread of its own.
    void Start();

    // Waits until it is, or has failed to be.
    void AwaitStart();

    // Waits until the n-th activation has been taken.
    void AwaitActivation(std::size_t number);

    // Until nothing happens any more but what waits for the play. Throws Stuck.
    void Rest() { AwaitCalm(false); }

    // The same, and ends what waits for the play, one after the other, until nothing does.
    void Settle();

    // What an operation's end leads to may come at any time from now on: it is waited for by a thread of the app.
    void EndOperationsAtOnce();

    // On a thread of the app: does it, and goes on when everything else has come to rest.
    void DoBeforeNext(void (*action)(Stage&));

    // On a thread of the app, at each of its calls.
    void AwaitOthersIfAsked();

    Helper& AddHelper() { return *m_helpers.emplace_back(std::make_unique<Helper>()); }
    Helper& FirstHelper() { return *m_helpers.front(); }
    Helper& LastHelper() { return *m_helpers.back(); }
    std::vector<std::unique_ptr<Helper>> const& Helpers() const { return m_helpers; }

    // The lines of the log so far. Throws std::runtime_error for one that is torn.
    Texts Lines() const;

    // The thread that wrote each of them.
    Texts LineThreads() const;

    // All the rest that is to be seen.
    Outcome Look();

    test::UserTemporaryFolder temporary;
    test::PoolWatch pool;
    sim::LocalDevice device;

  private:
    // Where threads of the app wait for the play.
    enum class Place
    {
        Sleep, // the UI thread
        Registration,
        Action,
    };

    std::vector<Texts> LineFields() const;
    void Park(Place place);
    bool Release(Place place);
    void AwaitCalm(bool isActing);
    bool IsCalm(bool isActing);
    bool IsUiThreadCalm();
    bool CompleteLaunch();
    bool CompleteMessage();
    std::uint64_t Progress();

    test::LogTearDown m_logTearDown;
    mutable std::mutex m_mutex; // over all that follows up to the helpers
    std::condition_variable m_released;
    std::map<Place, unsigned> m_parked;
    std::map<Place, unsigned> m_mayGo;
    Texts m_waits;
    Texts m_launches;
    std::int32_t m_startResult = 0;
    std::atomic<bool> m_endsAtOnce = false;
    std::atomic<bool> m_awaitsOthers = false;
    std::atomic<bool> m_hasEnded = false; // Application::Start has come back
    std::vector<std::unique_ptr<Helper>> m_helpers;
    test::SleepCall m_sleep;
    test::WaitCall m_wait;
    std::thread m_main;
};

} // namespace explore::faults
