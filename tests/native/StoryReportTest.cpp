// What the report says of logs as the app writes them.
#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;
using doctor::Result;

namespace
{

Texts Concat(Texts texts, Texts const& more)
{
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

// Of a helper that connected, and did nothing that is told.
Texts const connected = {"package: worked 1", "start-up: worked 1", "service: worked 1"};

} // namespace

TEST(StoryReport, OfAWholeDayThatWorks)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteChannel(log, 1);
    WriteRegistration(log, 3);
    WriteClosed(log, 10);
    WriteWoken(log, 3600, PushTask);
    WriteWoken(log, 24 * 3600, TimerTask);
    log.Write(25 * 3600, 1, {Started, Launched, LaunchForUser});
    log.Write(25 * 3600 + 1, 2, {LaunchDone});
    log.Write(25 * 3600 + 3, 1, {Exiting});
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report),
              (Texts{"package: worked 2", "start-up: worked 2", "service: worked 1", "channel: worked 2",
                     "URI stored: worked 2", "tasks registered: worked 1", "push or timer: worked 2",
                     "desktop component: worked 3", "task completed: worked 2", "exit: worked 1"}));
    EXPECT_EQ(report.summary, "Nothing failed.");
    EXPECT_EQ(report.Verdict(), Result::Worked);
}

// The launch

TEST(StoryReport, OfAPushWhoseLaunchIsRefused)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report), (Texts{"package: worked 1", "start-up: worked 1", "push or timer: worked 1",
                                      "desktop component: failed: The desktop component was not launched. 5",
                                      "task completed: failed: A background task was never completed. 3"}));
    EXPECT_EQ(report.summary, "The first stage that failed: desktop component, once, at 2024-01-05 09:00:00.040. The "
                              "desktop component was not launched.");
    EXPECT_EQ(report.Verdict(), Result::Failed);
}

TEST(StoryReport, OfAUserLaunchThatIsRefused)
{
    StoryLog log;
    log.Write(0, 1, {Started, Launched, LaunchForUser});
    log.Write(3, 1, {Exiting});
    log.Write(5, 1, {Started, BackgroundActivated, ServiceActivation, Connecting, Connected});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              (Texts{"package: worked 2", "start-up: worked 2", "service: worked 1",
                     "desktop component: failed: The desktop component was not launched. 3", "exit: worked 1"}));
}

// The launch that is done is the one that was asked for last: the one before was refused.
TEST(StoryReport, GivesALaunchThatIsDoneToTheLastOne)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush}); // 1 to 5
    WriteWoken(log, 20, TimerTask);                                                         // 6 to 11
    EXPECT_EQ(
        TextsOf(log.FinalReport()),
        (Texts{"package: worked 1", "start-up: worked 1", "push or timer: worked 2", "desktop component: worked 1",
               "desktop component: failed: The desktop component was not launched. 5", "task completed: worked 1",
               "task completed: failed: A background task was never completed. 3"}));
}

TEST(StoryReport, OfALaunchThatWentOnWhileTheMachineSlept)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    log.Write(8 * 3600, 2, {LaunchDone, TaskCompleted});
    EXPECT_EQ(log.FinalReport().summary, "Nothing failed.");
}

TEST(StoryReport, OfATaskThatTheAppDoesNotKnow)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral});
    EXPECT_EQ(
        TextsOf(log.FinalReport()),
        (Texts{"package: worked 1", "start-up: worked 1",
               "push or timer: failed: A background activation was neither a push, nor the timer, nor a helper. 2",
               "task completed: failed: A background task was never completed. 3"}));
}

// The registration

namespace
{

// A registration in which the lines stand, and its end after 60 s. Lines 6 to 10 are its beginning.
struct TimedOutWith : StoryLog
{
    TimedOutWith(double seconds, std::initializer_list<doctor::Line> lines, std::uint32_t thread = 3)
    {
        WriteStartForHelper(*this, 0);
        WriteRegistrationBegin(*this, 1);
        Write(1 + seconds, thread, lines);
        Write(61, 2, {RegistrationTimedOut});
        Write(61.1, 4, {RegistrationFailureSent, RegistrationCompleted});
    }
};

} // namespace

TEST(StoryReport, OfARegistrationWhoseChannelNeverArrives)
{
    TimedOutWith log(0, {});
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report),
              Concat(connected, {"channel: failed: The push channel did not arrive within 60 s. 10",
                                 "tasks registered: failed: The tasks were not registered within 60 s. 9..11"}));
    EXPECT_EQ(report.summary,
              "The first stage that failed: channel, once, at 2024-01-05 09:00:01.040. The push channel "
              "did not arrive within 60 s.");
}

TEST(StoryReport, OfARegistrationWhoseChannelArrivesTooLate)
{
    TimedOutWith log(0, {});
    log.Write(75, 3,
              {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, PushTaskRegistered, TimerTaskRegistered,
               RegistrationDone});
    auto const report = log.FinalReport();
    EXPECT_EQ(
        TextsOf(report),
        Concat(connected, {"channel: worked 1", "channel: failed: The push channel did not arrive within 60 s. 10",
                           "URI stored: worked 1", "tasks registered: worked 1",
                           "tasks registered: failed: The tasks were not registered within 60 s. 9..11"}));
    EXPECT_TRUE(report.summary.find("; it has worked since. ") != std::string::npos) << report.summary;
}

TEST(StoryReport, OfARegistrationWhoseChannelIsRefused)
{
    auto const channelFails = [](std::string const& what) {
        return Concat(connected, {"channel: failed: " + what,
                                  "tasks registered: failed: The tasks were not registered within 60 s. 9..12"});
    };
    EXPECT_EQ(TextsOf(TimedOutWith(0.5, {RegistrationThrew}).FinalReport()),
              channelFails("The platform refused the push channel. 10..11"));
    EXPECT_EQ(TextsOf(TimedOutWith(0.05, {RegistrationRefused}, 2).FinalReport()),
              channelFails("The push channel could not be asked for. 10..11"));
}

TEST(StoryReport, OfARegistrationWhoseUriCannotBeReadOrWritten)
{
    EXPECT_EQ(TextsOf(TimedOutWith(0.5, {ChannelReceived, RegistrationThrew}).FinalReport()),
              Concat(connected, {"channel: failed: The URI of the push channel could not be read. 11..12",
                                 "tasks registered: failed: The tasks were not registered within 60 s. 9..13"}));
    EXPECT_EQ(
        TextsOf(TimedOutWith(0.5, {ChannelReceived, ChannelUri, UriStoredForTasks, UriNotWritten, RegistrationDone})
                    .FinalReport()),
        Concat(connected, {"channel: worked 1",
                           "URI stored: failed: The channel URI was not written to the local settings. 12..14",
                           "tasks registered: failed: The tasks were not registered within 60 s. 9..16"}));
}

TEST(StoryReport, OfARegistrationWithATaskThatIsRefused)
{
    auto const stored = Concat(connected, {"channel: worked 1", "URI stored: worked 1"});
    EXPECT_EQ(TextsOf(TimedOutWith(0.5, {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, PushTaskRefused,
                                         RegistrationDone})
                          .FinalReport()),
              Concat(stored, {"tasks registered: failed: The tasks were not registered within 60 s. 9..17",
                              "tasks registered: failed: The push task was not registered. 14..15"}));
    EXPECT_EQ(TextsOf(TimedOutWith(0.5, {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, PushTaskRegistered,
                                         TimerTaskRefused, RegistrationDone})
                          .FinalReport()),
              Concat(stored, {"tasks registered: failed: The tasks were not registered within 60 s. 9..18",
                              "tasks registered: failed: The daily timer's task was not registered. 15..16"}));
    EXPECT_EQ(TextsOf(TimedOutWith(0.5, {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, TaskFound,
                                         RegistrationThrew})
                          .FinalReport()),
              Concat(stored, {"tasks registered: failed: The tasks were not registered within 60 s. 9..17",
                              "tasks registered: failed: A registration failed before its push task was registered. "
                              "14..16"}));
}

TEST(StoryReport, OfTasksRegisteredWithoutAUri)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistrationBegin(log, 1);
    WriteRegistered(log, 2);
    log.Write(2.1, 2, {RegistrationSignalled, UriMissing}); // 17, 18
    log.Write(2.2, 4, {RegistrationSent, RegistrationCompleted});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected, {"channel: worked 1", "URI stored: worked 1",
                                 "URI stored: failed: The tasks were registered without a stored URI. 17..18",
                                 "tasks registered: worked 1"}));
}

// The channel

namespace
{

// A request for the channel (6 to 8) and lines that follow.
struct ChannelRequestWith : StoryLog
{
    ChannelRequestWith(double seconds, std::initializer_list<doctor::Line> lines)
    {
        WriteStartForHelper(*this, 0);
        Write(1, 2, {RequestReceived, RequestDeferral, ChannelRequested});
        Write(1 + seconds, 3, lines);
    }
};

} // namespace

TEST(StoryReport, OfAChannelThatIsRefused)
{
    EXPECT_EQ(TextsOf(ChannelRequestWith(2, {ChannelThrew}).FinalReport()),
              Concat(connected, {"service: failed: A request was not answered. 8..9",
                                 "channel: failed: The platform refused the push channel. 8..9"}));
    EXPECT_EQ(TextsOf(ChannelRequestWith(0.1, {ChannelRefusedSent}).FinalReport()),
              Concat(connected, {"channel: failed: The push channel could not be asked for. 8..9"}));
}

TEST(StoryReport, OfAChannelThatNeverArrives)
{
    EXPECT_EQ(TextsOf(ChannelRequestWith(0, {}).FinalReport()),
              Concat(connected, {"service: failed: A request was not answered. 8",
                                 "channel: failed: The push channel did not arrive within 60 s. 8"}));
}

TEST(StoryReport, OfAUriThatIsNotWrittenThoughAnEarlierOneIsThere)
{
    ChannelRequestWith log(1, {ChannelReceived, ChannelUri, UriStoredForHelper, UriNotWritten, UriFound});
    log.Write(2.1, 4, {ChannelSent});
    log.Write(2.1, 3, {ChannelDone});
    log.Write(2.2, 4, {ChannelSent}); // the second of two messages
    WriteClosed(log, 3);
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report),
              Concat(connected, {"channel: worked 1",
                                 "URI stored: failed: The channel URI was not written to the local settings. 10..12"}));
    EXPECT_EQ(report.summary,
              "The first stage that failed: URI stored, once, at 2024-01-05 09:00:02.010. The channel URI "
              "was not written to the local settings.");
}

TEST(StoryReport, OfAUriThatIsNotStored)
{
    ChannelRequestWith log(1, {ChannelReceived, ChannelUri, UriNotFound, NoUriFound, ChannelDone});
    log.Write(2.1, 4, {ChannelSent});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected,
                     {"channel: worked 1", "URI stored: failed: No channel URI is in the local settings. 10..11"}));
}

TEST(StoryReport, OfAMessageThatIsNotSentSinceTheHelperIsNotThere)
{
    auto const gone = [](std::string const& lines) {
        return "service: failed: The reply was not sent to the helper. " + lines;
    };
    EXPECT_EQ(TextsOf(ChannelRequestWith(
                          1, {ChannelReceived, ChannelUri, UriStoredForHelper, UriFound, ChannelNotSent, ChannelDone})
                          .FinalReport()),
              Concat(connected, {gone("8..13"), "channel: worked 1", "URI stored: worked 1"}));
    EXPECT_EQ(TextsOf(ChannelRequestWith(0.1, {ChannelRefusedNotSent}).FinalReport()),
              Concat(connected, {gone("8..9"), "channel: failed: The push channel could not be asked for. 8..9"}));
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, RemovalRequested, RemovingAll, TaskFound, RemovalNotSent});
    log.Write(2, 2, {RequestReceived, RequestDeferral, ExitRequested, ExitNotAcknowledged});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected, {"service: failed: The reply was not sent to the helper. (2) 8..15", "exit: worked 1"}))
        << "one finding counts both";
}

TEST(StoryReport, OfARegistrationWhoseReplyIsNotSent)
{
    for (auto const reply : {RegistrationNotSent, RegistrationFailureNotSent})
    {
        StoryLog log;
        WriteStartForHelper(log, 0);
        WriteRegistrationBegin(log, 1);
        WriteRegistered(log, 2);
        log.Write(3, 2, {RegistrationSignalled, UriPresent, reply});
        EXPECT_EQ(TextsOf(log.FinalReport()),
                  Concat(connected, {"service: failed: The reply was not sent to the helper. 8..19",
                                     "channel: worked 1", "URI stored: worked 1", "tasks registered: worked 1"}));
    }
}

// The service

TEST(StoryReport, OfAServiceThatIsClosedInARequest)
{
    for (auto const closed : {ServiceClosed, ServiceCancelled})
    {
        StoryLog log;
        WriteStartForHelper(log, 0);
        WriteRegistrationBegin(log, 1);
        log.Write(5, 5, {closed}); // 11
        WriteRegistered(log, 6);
        log.Write(6.1, 2, {RegistrationSignalled, UriPresent, RegistrationNotSent});
        EXPECT_EQ(TextsOf(log.FinalReport()),
                  Concat(connected, {"service: failed: A connection was closed in the middle of a request. 8..11",
                                     "service: failed: The reply was not sent to the helper. 8..20",
                                     "channel: worked 1", "URI stored: worked 1", "tasks registered: worked 1"}));
    }
}

TEST(StoryReport, OfAServiceThatIsClosedBehindItsReplies)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistrationBegin(log, 1);
    auto writeChannelWithoutWriting = [&](double seconds) {
        log.Write(seconds, 8, {RequestReceived, RequestDeferral, ChannelRequested});
        log.Write(seconds + 0.1, 9, {ChannelReceived, ChannelUri, UriNotWritten, UriFound, ChannelDone});
        log.Write(seconds + 0.2, 8, {ChannelSent, ChannelSent});
    };
    writeChannelWithoutWriting(1.5); // takes no other request for answered
    log.Write(3, 5, {ServiceClosed});
    auto const findings = log.ReportAsOf(3.1).stages[2].findings;
    ASSERT_EQ(findings.size(), 2u); // and the request is under way
    EXPECT_EQ(findings[0].what, "A connection was closed in the middle of a request.");
    EXPECT_EQ(findings[0].count, 1u);
    EXPECT_EQ(findings[0].first->line, 8u); // the registration
}

TEST(StoryReport, OfARequestThatIsNotUnderstood)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral});
    EXPECT_EQ(TextsOf(log.FinalReport()), Concat(connected, {"service: failed: A request was not understood. 6"}));
}

TEST(StoryReport, OfATaskOfTheServiceThatCannotBeCompleted)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 5, {ServiceCancelled, ServiceCancelledError});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected, {"service: failed: The service's task could not be completed. 6..7"}));
}

TEST(StoryReport, OfARemovalThatFails)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, RemovalRequested, RemovingAll, TaskFound});
    EXPECT_EQ(TextsOf(log.FinalReport()), Concat(connected, {"service: failed: A request was not answered. 8"}));
}

TEST(StoryReport, OfARemoval)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, RemovalRequested, RemovingAll, TaskFound, TaskFound});
    log.Write(1.1, 4, {RemovalSent, RemovalCompleted});
    EXPECT_EQ(TextsOf(log.FinalReport()), connected);
}

TEST(StoryReport, OfAnExit)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, ExitRequested, TaskFound, TaskFound});
    log.Write(1.1, 4, {ExitAcknowledged, ExitCompleted});
    EXPECT_EQ(TextsOf(log.FinalReport()), Concat(connected, {"exit: worked 1"}));
}

TEST(StoryReport, OfAnExitThatFails)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, ExitRequested, TaskFound});
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected, {"exit: failed: The app did not exit when it was told to. 8"}));
}

TEST(StoryReport, OfARequestInWhichTheAppExits)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistrationBegin(log, 1);
    log.Write(2, 1, {Launched, LaunchForUser});
    log.Write(2.5, 7, {LaunchDone});
    log.Write(5, 1, {Exiting}); // 14
    auto const texts = TextsOf(log.FinalReport());
    EXPECT_EQ(texts,
              Concat(connected,
                     {"service: failed: The app exited in the middle. Under way: request to register. 8..14",
                      "channel: failed: The app exited in the middle. Under way: channel for a registration. 10..14",
                      "tasks registered: failed: The app exited in the middle. Under way: wait for the registration. "
                      "9..14",
                      "desktop component: worked 1", "exit: worked 1"}));
}

TEST(StoryReport, OfACompletionThatEndsTheProcess)
{
    for (auto const sent : {RegistrationSent, RegistrationFailureSent, RemovalSent, ExitAcknowledged})
    {
        StoryLog log;
        WriteStartForHelper(log, 0);
        log.Write(1, 4, {sent});
        auto const report = log.FinalReport();
        ASSERT_EQ(report.stages[2].findings.size(), 1u);
        EXPECT_TRUE(report.stages[2].findings[0].what.starts_with("The process ended in the middle. Under way: "));
    }
}

// The process

TEST(StoryReport, OfAProcessThatIsKilledInTheMiddle)
{
    for (auto const nextStart : {5.0, 3600.0}) // whether or not the limits are over by then
    {
        StoryLog log;
        WriteStartForHelper(log, 0);
        WriteRegistrationBegin(log, 1);
        WriteStartForHelper(log, nextStart); // 11
        auto const killed = [](std::string const& name, std::string const& lines) {
            return "failed: The process ended in the middle. Under way: " + name + ". " + lines;
        };
        auto const report = log.FinalReport();
        EXPECT_EQ(TextsOf(report), (Texts{"package: worked 2", "start-up: worked 2", "service: worked 2",
                                          "service: " + killed("request to register", "8..11"),
                                          "channel: " + killed("channel for a registration", "10..11"),
                                          "tasks registered: " + killed("wait for the registration", "9..11"),
                                          "exit: failed: The process ended in the middle. 1..11"}))
            << nextStart;
        EXPECT_EQ(report.stages[9].findings[0].last->message, MessageOf(Started));
    }
}

TEST(StoryReport, OfAProcessThatIsKilledAndNeverStartsAgain)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistrationBegin(log, 1);
    auto const report = log.FinalReport();
    EXPECT_EQ(report.stages[9].findings.size(), 1u);
    EXPECT_TRUE(report.stages[5].findings[0].what.starts_with("The process ended in the middle."))
        << report.stages[5].findings[0].what;
}

TEST(StoryReport, OfAProcessThatEndsInItsStart)
{
    StoryLog soon;
    soon.Write(0, 1, {Started});
    soon.Write(2, 1, {Started, ProtocolActivated});
    EXPECT_EQ(TextsOf(soon.FinalReport()),
              (Texts{"package: worked 2", "start-up: worked 1",
                     "start-up: failed: The process ended in the middle. Under way: start-up. 1..2", "exit: worked 1",
                     "exit: failed: The process ended in the middle. 1..2"}));
    StoryLog later;
    later.Write(0, 1, {Started});
    later.Write(60, 1, {Started, ProtocolActivated});
    EXPECT_EQ(TextsOf(later.FinalReport()),
              (Texts{"package: worked 2", "start-up: worked 1",
                     "start-up: failed: The process started and got no activation. 1", "exit: worked 1"}));
}

TEST(StoryReport, OfAProcessThatEndsIdleIsNoFailure)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistration(log, 1);
    WriteClosed(log, 5);
    log.Write(3600, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    log.Write(3601, 7, {LaunchDone, TaskCompleted});
    EXPECT_EQ(log.FinalReport().summary, "Nothing failed.");
}

TEST(StoryReport, OfAProcessThatFallsSilentWhileAnotherOneWrites)
{
    StoryLog log;
    WriteStartForHelper(log, 0);                                                                // 1 to 5
    WriteRegistrationBegin(log, 1);                                                             // 6 to 10
    log.Write(2, 21, {Started, BackgroundActivated, ServiceActivation, Connecting, Connected}); // 11 to 15
    log.Write(3, 2, {RegistrationThrew}); // 16: the first process writes beside the second one
    log.Write(200, 21, {BackgroundActivated, ServiceActivation, Connecting, Connected});
    auto const report = log.FinalReport();
    auto const silent = [](std::string const& name) {
        return "The process fell silent while another one went on writing. Under way: " + name + ".";
    };
    ASSERT_EQ(report.stages[5].findings.size(), 1u);
    EXPECT_EQ(report.stages[5].findings[0].what, silent("wait for the registration"));
    EXPECT_EQ(report.stages[5].findings[0].first->line, 9u);
    EXPECT_EQ(report.stages[3].findings.at(0).what, "The platform refused the push channel.");
}

TEST(StoryReport, TellsTwoProcessesApartByTheirThreads)
{
    StoryLog log;
    WriteStartForHelper(log, 0, 1);
    WriteRegistrationBegin(log, 1, 2);
    log.Write(1.5, 3, "another line");
    WriteStartForHelper(log, 2, 11);
    WriteRegistrationBegin(log, 2.5, 12);
    WriteRegistered(log, 3, 3); // the first process's
    log.Write(3.1, 2, {RegistrationSignalled, UriPresent});
    log.Write(60, 2, {RegistrationSent});
    log.Write(60.1, 2, {RegistrationCompleted});
    log.Write(62.6, 12, {RegistrationTimedOut});
    log.Write(62.7, 12, {RegistrationFailureSent, RegistrationCompleted});
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report),
              (Texts{"package: worked 2", "start-up: worked 2", "service: worked 2", "channel: worked 1",
                     "channel: failed: The push channel did not arrive within 60 s. 21", "URI stored: worked 1",
                     "tasks registered: worked 1",
                     "tasks registered: failed: The tasks were not registered within 60 s. 20..32"}));
}

TEST(StoryReport, GivesThreadsThatAreUsedAgainToTheNextProcess)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, ChannelRequested});
    WriteStartForHelper(log, 2);
    WriteChannel(log, 3);
    auto const report = log.FinalReport();
    EXPECT_EQ(report.stages[3].worked, 1u);
    ASSERT_EQ(report.stages[3].findings.size(), 1u);
    EXPECT_EQ(report.stages[3].findings[0].what, "The process ended in the middle. Under way: channel for the helper.");
}

TEST(StoryReport, OfTwoRequestsAtATime)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistrationBegin(log, 1, 2);
    WriteChannel(log, 1.1, 12, 13);
    WriteRegistered(log, 2.5, 3);
    log.Write(2.6, 2, {RegistrationSignalled, UriPresent});
    log.Write(2.7, 3, {RegistrationDone});
    log.Write(2.8, 4, {RegistrationSent, RegistrationCompleted});
    WriteClosed(log, 3);
    EXPECT_EQ(TextsOf(log.FinalReport()),
              Concat(connected, {"channel: worked 2", "URI stored: worked 2", "tasks registered: worked 1"}));
}

// Up to when

TEST(StoryReport, SaysWhatEndsTheProcessInALaunch)
{
    StoryLog log;
    log.Write(0, 1, {Started, Launched, LaunchForUser});
    auto const report = log.FinalReport();
    auto const& finding = report.stages[static_cast<std::size_t>(doctor::Stage::ComponentLaunched)].findings.at(0);
    EXPECT_EQ(finding.what, "The process ended in the middle. Under way: launch for the user.");
    EXPECT_TRUE(finding.cause.starts_with("Windows refused the launch at once")) << finding.cause;
    EXPECT_TRUE(finding.advice.starts_with("Look whether HOV\\Tessaline.exe")) << finding.advice;
}

TEST(StoryReport, CannotTellOfWhatHasTimeYet)
{
    auto const reportAsOf = [](double seconds) {
        StoryLog log;
        log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
        return log.ReportAsOf(seconds);
    };
    auto const open = reportAsOf(30);
    EXPECT_EQ(TextsOf(open),
              (Texts{"package: worked 1", "start-up: worked 1", "push or timer: worked 1",
                     "desktop component: cannot be told: The log ends before this has ended. Under way: launch for a "
                     "push. 5",
                     "task completed: cannot be told: The log ends before this has ended. Under way: background task. "
                     "3"}));
    EXPECT_EQ(open.Verdict(), Result::CannotBeTold);
    EXPECT_EQ(open.stages[7].result, Result::CannotBeTold);
    EXPECT_EQ(open.summary, "Nothing failed up to the log's end, where something is under way.");
    EXPECT_EQ(reportAsOf(31).Verdict(), Result::Failed);
}

TEST(StoryReport, OfAStageThatWorkedAndIsUnderWayAgain)
{
    StoryLog log;
    log.Write(0, 1, {Started});
    WriteWoken(log, 1, PushTask);
    log.Write(100, 1, {BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    auto const report = log.ReportAsOf(101);
    EXPECT_EQ(report.stages[7].result, Result::Worked);
    EXPECT_EQ(report.Verdict(), Result::CannotBeTold);
}

TEST(StoryReport, TellsFailuresBeforeWhatIsUnderWay)
{
    StoryLog log;
    log.Write(0, 2, {ChannelRequested});
    log.Write(1, 3, {RemovalRequested, RemovalNotSent});
    auto const findings = log.ReportAsOf(2).stages[2].findings;
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0].result, Result::Failed);
    EXPECT_EQ(findings[1].result, Result::CannotBeTold);
}

TEST(StoryReport, SaysThatAStageHasWorkedSince)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    log.Write(100, 1, {BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    WriteWoken(log, 200, PushTask);
    auto const report = log.FinalReport();
    EXPECT_EQ(report.summary,
              "The first stage that failed: desktop component, 2 times, last at 2024-01-05 09:01:40.030; it has worked "
              "since. The desktop component was not launched.");
    EXPECT_EQ(report.Verdict(), Result::Failed);
}

TEST(StoryReport, NamesWhatStillFailsBeforeWhatHasWorkedSince)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {RequestReceived, RequestDeferral, ChannelRequested});
    log.Write(2, 3, {ChannelRefusedSent});
    WriteChannel(log, 10);
    log.Write(100, 1, {BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    EXPECT_TRUE(log.FinalReport().summary.starts_with("The first stage that failed: desktop component,"));
}

TEST(StoryReport, OfNothing)
{
    StoryLog log;
    auto const report = log.FinalReport();
    EXPECT_EQ(TextsOf(report), Texts());
    EXPECT_EQ(report.summary, "There is no line of the app.");
    EXPECT_EQ(report.Verdict(), Result::NotSeen);
    ASSERT_EQ(report.files.size(), 1u);
    EXPECT_EQ(report.files[0].lines, 0u);
    EXPECT_EQ(report.files[0].first, std::nullopt);
}

TEST(StoryReport, OfLinesThatTellOfNoStage)
{
    StoryLog log;
    log.Write(0, 1, {ServiceClosed});
    auto const report = log.FinalReport();
    EXPECT_EQ(report.summary, "The app's lines tell of no stage.");
    EXPECT_EQ(report.Verdict(), Result::NotSeen);
}

TEST(StoryReport, CountsOtherTextAndOtherProducts)
{
    StoryLog log;
    log.WriteOther("no line");
    log.WriteOther("");
    log.WriteOther("half", true);
    log.Write(1, 1, std::string(MessageOf(Started)), "OTHER");
    log.Write(2, 1, {Started, ProtocolActivated});
    auto const report = log.FinalReport();
    ASSERT_EQ(report.files.size(), 1u);
    EXPECT_EQ(report.files[0].lines, 2u);
    EXPECT_EQ(report.files[0].others, 3u);
    EXPECT_EQ(report.files[0].damaged, 1u);
    EXPECT_EQ(report.files[0].first, At(2));
    EXPECT_EQ(report.files[0].last, At(2.01));
    EXPECT_EQ(TextsOf(report), (Texts{"package: worked 1", "start-up: worked 1", "exit: worked 1"}));
}

TEST(StoryReport, HasTheEvidencesTimeFileLineAndMessage)
{
    StoryLog log(L"a/KZEB 2024-1-5 08-00-00.log");
    log.Write(-7200, 1, {Started, ProtocolActivated});
    log.Begin(L"a/KZEB.log");
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    auto const report = log.FinalReport();
    auto const& evidence = report.stages[7].findings.at(0).first.value();
    EXPECT_EQ(evidence.time, At(0.04));
    EXPECT_TRUE(evidence.file == L"a/KZEB.log");
    EXPECT_EQ(evidence.line, 5u);
    EXPECT_EQ(evidence.message, MessageOf(LaunchForPush));
    EXPECT_TRUE(report.stages[9].lastWorked->file == L"a/KZEB 2024-1-5 08-00-00.log");
    EXPECT_EQ(report.stages[9].lastWorked->line, 2u);
    EXPECT_EQ(report.stages[8].lastWorked, std::nullopt);
}

TEST(StoryReport, ShowsNothingOfTheChannelUri)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteChannel(log, 1);
    log.Write(10, 2, {RequestReceived, RequestDeferral, ChannelRequested});
    log.Write(11, 3, {ChannelReceived, ChannelUri, UriNotFound});
    auto const report = log.FinalReport();
    EXPECT_EQ(report.stages[4].findings.at(0).first->message, "Received Channel URI is ");
}

TEST(StoryReport, HasTheLastHeader)
{
    StoryLog log;
    for (auto const* const version : {"1", "2"})
    {
        log.Write(0, 1, {HeaderEdge});
        log.Write(0, 1, "Bit: 64");
        log.Write(0, 1, std::string("HOV Version: 12.0.3.") + version);
        log.Write(0, 1, "OS Build Version: 22631");
        log.Write(0, 1, "OS Locale: en_US");
        log.Write(0, 1, "OS Name: Windows 11");
        log.Write(0, 1, "OS Version: 10.0.0");
        log.Write(0, 1, {HeaderEdge});
    }
    auto const machine = log.FinalReport().machine;
    EXPECT_EQ(machine.suiteVersion, "12.0.3.2");
    EXPECT_EQ(machine.systemBuild, "22631");
    EXPECT_EQ(machine.locale, "en_US");
    EXPECT_EQ(machine.systemName, "Windows 11");
    EXPECT_EQ(machine.systemVersion, "10.0.0");
}
