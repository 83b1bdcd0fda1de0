#pragma once
#include "explore/faults/model/Outcome.h"
#include "explore/faults/model/Step.h"
#include "explore/faults/model/Way.h"

#include <deque>
#include <optional>
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
    std::size_t requests = 0; // that helpers make; the first one is the first helper's, the second the last one's
    std::size_t helpers = 1;  // the last one of them gets the messages
    Texts tasks = {L"PushNotificationBGTask", L"Other", L"URITimerBGTask"};
    std::wstring uri = L"{old}";
};

// What a thread does beside the others: its lines and calls stand somewhere among the others, in this order.
struct Aside
{
    Texts lines = {};
    Texts calls = {};
};

// The helper goes away, or its task is cancelled. While the handlers of that run, all other threads wait.
struct Loss
{
    std::size_t lines; // so many stand before theirs
    std::size_t calls;
    std::vector<Steps> handlers;
};

// Goes through steps as the rules say, but for the calls that go another way, and tells what comes of it. Nothing
// happens at the same time here: what an operation's end leads to comes when everything else has come to rest. Where it
// may come earlier, lines and calls are put aside.
class Reckoning
{
  public:
    Reckoning(Scene scene, std::vector<WayAt> deviations = {});

    // Runs the steps, and all that follows. second: the handler of a request that comes when everything rests for the
    // first time; empty for none.
    void Run(Steps const& steps, Role role, Steps const& second = {});

    // Without what threads do beside the others.
    Outcome const& Result() const noexcept { return m_outcome; }
    std::vector<Aside> const& Asides() const noexcept { return m_aside; }
    std::optional<Loss> const& Lost() const noexcept { return m_loss; }

    // All calls, in their order if one thread after the other runs.
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

    struct Request
    {
        Texts message = {}; // the reply that is being made
        std::wstring response = {};
        bool isDeferred = false;
        bool isLost = false;    // its helper has ended, or the connection is closed
        bool isUnheard = false; // by the app
        unsigned completions = 0;
    };

    // What runs at the end of an operation.
    struct Continuation
    {
        std::size_t request;
        Steps const* steps;
        std::int32_t failure = 0; // of the operation
        bool isAside = false;
    };

    void Play(Steps const& steps);
    void Play(Step const& step);
    static void Require(bool isMet, std::int32_t code);
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
    void Lose(Way way);
    void LoseConnection(Way way);
    void LoseRequests(Way way);
    void PlaySecond();
    void FillOutcome();

    // The way that this call goes, after the call of the class's factory where it needs one. Throws where it fails now.
    Way Take(std::wstring_view call);
    Way TakeOne(std::wstring_view call);
    void Effect(Step const& made, bool gaveNull);
    void Put(std::wstring_view keyAndValue);
    Way WayOfNext(std::wstring_view call);
    void Say(Step const& step);

    Scene m_scene;
    std::vector<WayAt> m_deviations;
    Outcome m_outcome;
    std::vector<Aside> m_aside;
    std::optional<Loss> m_loss;
    std::optional<Way> m_later; // what comes when the activation has been taken
    Texts m_calls;
    std::set<std::wstring, std::less<>> m_factories; // the calls for which they were taken
    std::deque<Continuation> m_ready;                // the platform ends these operations at once
    std::deque<Continuation> m_launches;             // and these when everything rests, first these
    std::deque<Continuation> m_sends;                // then these
    Steps const* m_second = nullptr;                 // the request that is still to come
    std::vector<Request> m_requests;
    std::vector<std::size_t> m_deferred; // the requests whose deferrals were taken
    std::size_t m_request = 0;           // the one that is being served
    std::size_t m_task = 0;              // of an iteration
    bool m_isNull = false;               // what the last call gave
    bool m_boxIsNull = false;            // what the last string was boxed in
    bool m_hasTrigger = false;           // of the task that is being built
    bool m_isSignalled = false;
    bool m_isAside = false;
    bool m_areHandlersRunning = false; // of a loss
    bool m_hasDeferral = false;        // of the activation's task
    std::int32_t m_operationFailure = 0;
};

} // namespace explore::faults
