#include "simulator/doctor/LastWake.h"

#include "doctor/live/MakeFinding.h"
#include "simulator/base/Moment.h"
#include "simulator/base/Text.h"

#include <algorithm>

namespace sim
{

namespace
{

using doctor::Failed;
using doctor::Finding;
using doctor::Stage;
using doctor::Worked;

std::uint32_t WakeIn(Event const& event)
{
    auto const wake = event.Detail(L"wake");
    return wake ? ParseNumber(*wake).value_or(0) : 0;
}

// The events of one push or timer.
class Wake
{
  public:
    Wake(std::vector<Event> const& journal, std::uint32_t number) : m_number(number)
    {
        std::ranges::copy_if(journal, std::back_inserter(m_events),
                             [&](Event const& event) { return WakeIn(event) == number; });
    }

    Event const* Find(std::wstring_view kind) const
    {
        auto const found = std::ranges::find(m_events, kind, &Event::kind);
        return found == m_events.end() ? nullptr : &*found;
    }

    bool Has(std::wstring_view kind) const { return Find(kind) != nullptr; }

    std::string DetailOf(std::wstring_view kind, std::wstring_view name) const
    {
        auto const* const event = Find(kind);
        return event ? ToUtf8(event->Detail(name).value_or(L"")) : std::string();
    }

    // "Wake 3, a push at 2024-01-05 09:30:12.045,"
    std::string Name() const
    {
        return "Wake " + std::to_string(m_number) + (Has(L"push-sent") ? ", a push at " : ", a timer at ") +
               ToUtf8(DateAndTimeText(m_events.front().time)) + ",";
    }

    bool HasEnded() const { return Has(L"task-completed") || Has(L"task-lost"); }

  private:
    std::uint32_t m_number;
    std::vector<Event> m_events;
};

struct LossMeaning
{
    std::wstring_view reason;
    std::string_view what;
    std::string_view advice;
};

constexpr LossMeaning losses[] = {
    {L"no-channel", "the app has no open channel", "Ask for one: helper get-channel-uri."},
    {L"no-task", "no task is registered that a push triggers", "Register it: helper register."},
    {L"no-network", "the device has no network", "End it: sim network on."},
    {L"logged-off", "nobody is logged on", "End it: sim logon."},
    {L"asleep", "the device is asleep", "End it: sim wake."},
};

Finding PushLost(Event const& event)
{
    auto const reason = event.Detail(L"reason").value_or(L"");
    auto const* const loss = std::ranges::find(losses, reason, &LossMeaning::reason);
    auto const isKnown = loss != std::end(losses);
    return Failed(Stage::Woken,
                  "The last push, at " + ToUtf8(DateAndTimeText(event.time)) +
                      ", was lost: " + (isKnown ? std::string(loss->what) : ToUtf8(reason)) + ".",
                  "", isKnown ? std::string(loss->advice) : "See what happened: sim events.");
}

Finding PushRefused(Event const& event)
{
    return Failed(Stage::Woken,
                  "The push service refused the last push, at " + ToUtf8(DateAndTimeText(event.time)) + ", with " +
                      ToUtf8(event.Detail(L"status").value_or(L"")) + ".",
                  "410 stands for a channel that has ended, 404 for a URI that never was one.",
                  "Send it to the URI that helper get-channel-uri gives.");
}

Finding NotYet(Stage stage, std::string what)
{
    return doctor::CannotBeTold(stage, std::move(what), "Look again, or see what runs: sim tasks.");
}

Finding ProcessStep(Wake const& wake)
{
    if (!wake.Has(L"task-started"))
    {
        return Failed(Stage::Woken, wake.Name() + " has not started its task.",
                      "Another task runs, or something holds tasks back.", "See what runs: sim tasks.");
    }
    auto const instance = "instance " + wake.DetailOf(L"task-started", L"instance");
    if (wake.Has(L"activated"))
    {
        return Worked(Stage::Woken, wake.Name() + " came to the app's process, as " + instance + ".");
    }
    return wake.HasEnded()
               ? Failed(Stage::StartUp, wake.Name() + " is lost: no process of the app took " + instance + ".",
                        "The app's process did not start, or ended first.",
                        "See why: sim events has its end, or why it did not start.")
               : NotYet(Stage::Woken,
                        wake.Name() + " has not come to the app's process: " + instance + " waits for it.");
}

Finding ComponentStep(Wake const& wake)
{
    if (wake.Has(L"desktop-started"))
    {
        return Worked(Stage::ComponentLaunched, wake.Name() + " started the desktop component, for " +
                                                    wake.DetailOf(L"desktop-started", L"group") + ".");
    }
    if (wake.Has(L"desktop-not-started"))
    {
        return Failed(Stage::ComponentLaunched,
                      wake.Name() + " did not start the desktop component: " +
                          wake.DetailOf(L"desktop-not-started", L"result") + ".",
                      "The component's file or its parameter group is missing, or a fault is set.",
                      "Look for HOV\\Tessaline.exe in the package; sim status has the faults.");
    }
    return wake.HasEnded() ? Failed(Stage::ComponentLaunched, wake.Name() + " did not start the desktop component.",
                                    "The app's call failed, or its process ended first.",
                                    "The app's log has no \"Launch Done !! \" then: see the lines before.")
                           : NotYet(Stage::ComponentLaunched, wake.Name() + " has not started the desktop component.");
}

Finding EndStep(Wake const& wake)
{
    if (wake.Has(L"task-lost"))
    {
        return Failed(Stage::TaskCompleted, wake.Name() + " was not completed: the app's process ended before.",
                      "It crashed, or was ended from outside.", "See how it ended: sim events.");
    }
    if (wake.Has(L"task-cancelled"))
    {
        return Failed(Stage::TaskCompleted,
                      wake.Name() + " was cancelled: " + wake.DetailOf(L"task-cancelled", L"reason") + ".",
                      "The task took too long, or the device's state changed.", "The app's log has its last step.");
    }
    return wake.HasEnded() ? Worked(Stage::TaskCompleted, wake.Name() + " is completed.")
                           : NotYet(Stage::TaskCompleted, wake.Name() + " is not completed.");
}

} // namespace

std::vector<Finding> LastWakeFindings(std::vector<Event> const& journal, DeviceState const& state)
{
    std::vector<Event> session; // the numbers of another one begin again
    std::ranges::copy_if(journal, std::back_inserter(session),
                         [&](Event const& event) { return event.time >= state.clock.since; });
    auto const isAttempt = [](Event const& event) {
        return event.kind.starts_with(L"push-") || (event.kind == L"task-started" && WakeIn(event) != 0);
    };
    auto const last = std::ranges::find_if(session.rbegin(), session.rend(), isAttempt);
    if (last == session.rend())
    {
        return {doctor::MakeFinding(Stage::Woken, doctor::Result::NotSeen,
                                    "No push and no timer has come since the device was switched on.", "", "")};
    }
    if (last->kind == L"push-lost")
    {
        return {PushLost(*last)};
    }
    if (last->kind == L"push-refused")
    {
        return {PushRefused(*last)};
    }
    auto const number = WakeIn(std::ranges::max(session, {}, WakeIn));
    if (std::ranges::find(state.tasks.waiting, number, &WaitingState::wake) != state.tasks.waiting.end())
    {
        return {};
    }
    Wake const wake(session, number);
    std::vector<Finding> findings = {ProcessStep(wake)};
    if (findings.back().result == doctor::Result::Worked)
    {
        findings.push_back(ComponentStep(wake));
        findings.push_back(EndStep(wake));
    }
    return findings;
}

} // namespace sim
