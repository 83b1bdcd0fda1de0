#pragma once
#include "simulator/model/Device.h"
#include "simulator/services/Alarms.h"
#include "simulator/services/AppServiceRouter.h"
#include "simulator/services/BackgroundTasks.h"
#include "simulator/services/Outside.h"
#include "simulator/services/PushChannel.h"
#include "simulator/services/TaskInstances.h"
#include "simulator/services/VirtualClock.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace sim
{

// The platform's services behind the runtime classes: app-service connections, background tasks, the push channel and
// the clock that they go by. The broker has one for the device, a test in one process has its own.
//
// The runtime classes of a process speak to it in messages.
//   With an answer (Ask):
//   open-app-service NAME FAMILY            opened STATUS CONNECTION         (AppServiceConnectionStatus; CONNECTION
//                                                                            only with 0)
//   send CONNECTION END SET                 response STATUS SET              (AppServiceResponseStatus)
//   respond REQUEST SET                     responded STATUS                 (AppServiceResponseStatus)
//   create-channel                          channel RESULT URI EXPIRY        (EXPIRY: 100 ns since 1601, UTC)
//   register-task NAME TRIGGER MINUTES ONCE registered RESULT ID             (TRIGGER: push, timer; ONCE: 0, 1; ID: a
//                                                                            GUID without braces)
//   tasks                                   tasks ID NAME ID NAME …          (in the order of registration)
//   unregister-task ID CANCEL               unregistered RESULT              (CANCEL: 0, 1)
//   Without (Tell):
//   request-completed REQUEST               its handler has returned and its deferral, if it took one, is completed
//   request-refused REQUEST                 nobody listens at the caller's end
//   close CONNECTION END
//   task-returned INSTANCE                  OnBackgroundActivated has returned
//   task-completed INSTANCE                 and every deferral that was taken is completed
//   To a process, through its Peer:
//   request CONNECTION END REQUEST SET      a message that arrives at this end
//   service-closed CONNECTION END STATUS    (AppServiceClosedStatus)
//   cancel INSTANCE REASON                  (BackgroundTaskCancellationReason)
//   ended INSTANCE                          its completion has arrived: no more comes for it
//
// END is caller or service. SET is a value set as text, which only the runtime classes read; it is empty in a response
// that there is not. RESULT is a result code, 0 or failing, as Hex gives it, and nothing follows a failing one; STATUS
// and REASON are the platform's numbers.
class Services
{
  public:
    using Answer = std::function<void(Message)>;
    using Words = std::vector<std::wstring>;
    using Outside = sim::Outside;
    using Limits = sim::Limits;

    // device: where registrations, the channel and the clock are kept. mutex: the owner's; all members are called with
    // it held but for the destructor; it is taken here when a limit is over.
    Services(Device const& device, Outside outside, Limits limits, std::mutex& mutex);
    Services(Services const&) = delete;
    Services& operator=(Services const&) = delete;
    ~Services() = default;

    // Peer::Send and the answer are called with the mutex held: they must not call back. A request that is not
    // understood, or that fails for want of a working disk, is answered with "error" and a sentence.
    void Ask(std::shared_ptr<Peer> const& from, Message const& request, Answer const& answer);
    void Tell(std::shared_ptr<Peer> const& from, Message const& words);

    // What became of a background activation: the app's process has taken it, just before OnBackgroundActivated is
    // called; or it was lost, since the process did not start. instance: the activation's INSTANCE.
    void Taken(std::shared_ptr<Peer> const& from, std::wstring const& instance);
    void Lost(std::wstring const& instance);

    // A process has gone, in whatever way; isApp: it was the app's. What the app had not taken waits for its next one.
    void Gone(Peer const& from, bool isApp);

    // The package has been removed, and with it what the platform keeps for it.
    void PackageRemoved();

    // The world outside. Push throws Error for a payload beyond the limit; otherwise it says what became of it.
    std::wstring Push(std::wstring const& payload);
    void AdvanceClock(std::int64_t minutes);
    void RevokeChannel();
    void ReplaceChannel(std::wstring uri); // by one with that URI
    void CancelTasks(int reason);          // all running instances

    // For people, in lines.
    std::wstring Status() const;
    std::wstring Tasks() const;
    std::wstring ClockText() const { return m_clock.Text(); }

  private:
    std::optional<Message> AnswerTo(Peer const& from, Message const& request);
    bool IsApp(Peer const& peer) const { return !m_outside.isApp || m_outside.isApp(peer); }

    Outside m_outside;
    VirtualClock m_clock;
    PushChannel m_channel;
    TaskInstances m_instances;
    AppServiceRouter m_router;
    BackgroundTasks m_tasks;
    Alarms m_alarms; // last, so that it goes first: then no limit of the others runs out any more
};

} // namespace sim
