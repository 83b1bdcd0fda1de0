#pragma once
#include "explore/faults/model/Outcome.h"
#include "explore/faults/model/Step.h"
#include "explore/faults/model/Way.h"

#include <deque>
#include <set>
#include <string>

namespace explore::faults
{

// Who runs steps, which decides what a failure of theirs leads to.
enum class Role
{
    Start,        // the app does not start
    Override,     // the app ends
    Handler,      // of an event: nothing
    Continuation, // the process ends at once
};

// What is so at the beginning.
struct Scene
{
    std::wstring activation = {}; // the task that an activation is for; empty for a helper's
    bool isConnected = false;
    std::size_t helpers = 1; // the last one of them gets the messages
    Texts tasks = {L"PushNotificationBGTask", L"Other", L"URITimerBGTask"};
    std::wstring uri = L"{old}";
};

// Goes through steps as the rules say, but for the calls that go another way, and tells what comes of it. Nothing
// happens at the same time here: what an operation's end leads to comes when everything else has come to rest. Where it
// may come earlier, the lines are put aside.
class Reckoning
{
  public:
    struct Deviation
    {
        std::size_t call; // counted from 0
        Way way;
    };

    Reckoning(Scene scene, std::vector<Deviation> deviations = {});

    // Runs the steps, and all that follows. beside: a handler's, which run at the same time.
    void Run(Steps const& steps, Role role, Steps const& beside = {});

    Outcome const& Result() const noexcept { return m_outcome; }

    // The lines of each thread that runs beside the others: somewhere among the other lines, in this order.
    std::vector<Texts> const& Aside() const noexcept { return m_aside; }

    bool IsConnectionLost() const noexcept { return m_isLost; }

    // The calls, in their order.
    Texts const& Calls() const noexcept { return m_calls; }

  private:
    struct Failure
    {
        std::int32_t code;
    };

    struct EndOfScope
    {
    };

    struct ProcessEnd
    {
    };

    // What runs at the end of an operation.
    struct Continuation
    {
        Steps const* steps;
        std::int32_t failure = 0; // of the operation
        bool isAside = false;
    };

    void Play(Steps const& steps);
    void Play(Step const& step);
    void PlayGuarded(Step const& step);
    void PlayOperation(Step const& step);
    void PlayEachTask(Step const& step);
    void PlayWait(Step const& step);
    void PlayScope(Step const& step);
    void Start(Step const& step, Way way);
    void Continue(Continuation const& continuation);
    void Guarded(Steps const& steps, Role role);
    void ContinueAll();
    void PlayAside(Steps const& steps, Role role);
    void LoseConnection(Way way);

    // The way that this call goes, after the call of the class's factory where it needs one. Throws where it fails now.
    Way Take(std::wstring_view call);
    Way TakeOne(std::wstring_view call);
    void Effect(Step const& step, bool isNull);
    void Put(std::wstring_view keyAndValue);
    Way WayOfNext(std::wstring_view call);
    void Say(std::wstring_view site, std::wstring_view line);

    Scene m_scene;
    std::vector<Deviation> m_deviations;
    Outcome m_outcome;
    std::vector<Texts> m_aside;
    Texts m_calls;
    std::set<std::wstring, std::less<>> m_factories; // the calls for which they were taken
    std::deque<Continuation> m_ready;                // the platform ends these operations at once
    std::deque<Continuation> m_launches;             // and these when everything rests, first these
    std::deque<Continuation> m_sends;                // then these
    Texts m_message;
    std::size_t m_task = 0;    // of an iteration
    bool m_isNull = false;     // what the last call gave
    bool m_boxIsNull = false;  // what the last string was boxed in
    bool m_hasTrigger = false; // of the task that is being built
    bool m_isSignalled = false;
    bool m_deferralTaken = false;
    bool m_isAside = false;
    bool m_isLost = false; // the connection
    bool m_isAnsweredByLoss = false;
    bool m_hasDeferral = false; // of the activation's task
    std::int32_t m_operationFailure = 0;
};

} // namespace explore::faults
