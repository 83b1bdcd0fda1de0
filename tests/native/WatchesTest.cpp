// What the report says of a log that no story of its own tells.
#include "doctor/stories/Watches.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;
using Texts = std::vector<std::string>;

namespace
{

constexpr double hour = 3600;
constexpr double day = 24 * hour;

// "... 1..3" of each remark.
Texts RemarksOf(doctor::Report const& report)
{
    auto texts = TextsOf(report);
    std::erase_if(texts, [](auto const& text) { return !text.starts_with("remark: "); });
    return texts;
}

// Of the stage's failures.
Texts FailuresOf(doctor::Report const& report)
{
    auto texts = TextsOf(report);
    std::erase_if(texts, [](auto const& text) { return text.find(": failed: ") == text.npos; });
    return texts;
}

// Two registrations of two helpers that overlap: each finds no task of the other.
void WriteOverlapping(StoryLog& log, double seconds)
{
    WriteRegistrationBegin(log, seconds, 2);
    WriteRegistrationBegin(log, seconds + 0.1, 12);
    log.Write(seconds + 1, 3, {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored});
    log.Write(seconds + 1.1, 13, {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored});
    log.Write(seconds + 1.2, 3, {PushTaskRegistered});
    log.Write(seconds + 1.3, 13, {PushTaskRegistered});
    log.Write(seconds + 1.4, 3, {TimerTaskRegistered});
    log.Write(seconds + 1.5, 13, {TimerTaskRegistered});
    log.Write(seconds + 1.6, 2, {RegistrationSignalled, UriPresent});
    log.Write(seconds + 1.6, 12, {RegistrationSignalled, UriPresent});
    log.Write(seconds + 1.7, 4, {RegistrationSent, RegistrationCompleted});
    log.Write(seconds + 1.7, 14, {RegistrationSent, RegistrationCompleted});
}

} // namespace

TEST(RegistrationWatch, TellsOfTasksThatAreRegisteredTwice)
{
    StoryLog log;
    WriteStartForHelper(log, 0); // 1 to 5
    WriteOverlapping(log, 1);    // tasks: 24 to 27
    auto const report = log.FinalReport();
    EXPECT_EQ(FailuresOf(report),
              (Texts{"tasks registered: failed: The push task is registered twice: each push wakes the suite twice. "
                     "24..25",
                     "tasks registered: failed: The daily timer's task is registered twice: it wakes the suite twice a "
                     "day. 26..27"}));
    EXPECT_FALSE(report.summary.ends_with("It has worked since.")) << report.summary;
}

TEST(RegistrationWatch, TellsOfThemAlsoInTheNextProcess)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteOverlapping(log, 1);
    log.Write(hour, 1, {Started});
    WriteWoken(log, hour + 1, PushTask);
    log.Write(hour + 2, 3, {UriStored, PushTaskRefused});
    log.Write(hour + 3, 3, {UriStored, PushTaskRegistered, TimerTaskRegistered});
    auto const report = log.FinalReport();
    EXPECT_EQ(FailuresOf(report).size(), 3u);
    EXPECT_NE(report.summary.find(" is registered twice: "), std::string::npos) << report.summary;
    EXPECT_FALSE(report.summary.ends_with("It has worked since.")) << report.summary;
}

TEST(RegistrationWatch, OnlyRemarksOnThemWhenTheyWereRemovedLater)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteOverlapping(log, 1);
    WriteRegistrationBegin(log, 10);
    log.Write(11, 3,
              {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, TaskFound, TaskFound, TaskFound, TaskFound,
               PushTaskRegistered, TimerTaskRegistered});
    log.Write(11.2, 2, {RegistrationSignalled, UriPresent, RegistrationSent, RegistrationCompleted});
    auto const report = log.FinalReport();
    EXPECT_EQ(FailuresOf(report), Texts());
    EXPECT_EQ(RemarksOf(report),
              (Texts{"remark: The push task was registered twice for a time; later both were removed. 24..25",
                     "remark: The daily timer's task was registered twice for a time; later both were removed. "
                     "26..27"}));
}

TEST(RegistrationWatch, IsContentWithARemovalBetween)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteRegistration(log, 1);
    log.Write(5, 3, {TaskFound, TaskFound, PushTaskRegistered, TimerTaskRegistered});
    EXPECT_EQ(TextsOf(log.FinalReport()).size(), 6u); // that all worked
}

TEST(RegistrationWatch, IsContentWithANewStart)
{
    StoryLog log;
    log.Write(0, 1, {Started, ProtocolActivated, PushTaskRegistered, TimerTaskRegistered});
    log.Write(1, 1, {Started, ProtocolActivated, PushTaskRegistered, TimerTaskRegistered});
    EXPECT_EQ(FailuresOf(log.FinalReport()), Texts());
}

namespace
{

// The timer was registered in line 16 of 21, at 1.85 s.
struct RegisteredLog : StoryLog
{
    RegisteredLog()
    {
        WriteStartForHelper(*this, 0);
        WriteRegistration(*this, 1);
    }
};

} // namespace

TEST(TimerWatch, TellsOfMoreThanADayWithoutTheTimer)
{
    RegisteredLog log;
    WriteWoken(log, 20 * hour, PushTask);
    WriteWoken(log, 26 * hour, PushTask); // 28
    WriteWoken(log, 27 * hour, PushTask);
    EXPECT_EQ(FailuresOf(log.FinalReport()),
              Texts{"push or timer: failed: More than a day passed without the daily timer. 16..28"});
}

TEST(TimerWatch, IsContentWithATimerSoonAfterTheMachineWasOff)
{
    RegisteredLog log;
    log.Write(60 * hour, 1, {Started});
    WriteWoken(log, 60 * hour + 60, TimerTask);
    WriteWoken(log, 84 * hour, TimerTask);
    auto const report = log.ReportAsOf(85 * hour);
    EXPECT_EQ(FailuresOf(report), Texts());
    EXPECT_EQ(RemarksOf(report), Texts());
}

TEST(TimerWatch, WaitsAQuarterOfAnHourAfterTheMachineWasOff)
{
    auto const failures = [](double asOf) {
        RegisteredLog log;
        log.Write(60 * hour, 1, {Started, ProtocolActivated});
        auto const report = log.ReportAsOf(asOf);
        EXPECT_EQ(RemarksOf(report), Texts());
        return FailuresOf(report).size();
    };
    EXPECT_EQ(failures(60 * hour + 15 * 60), 0u);
    EXPECT_EQ(failures(60 * hour + 15 * 60 + 1), 1u);
    RegisteredLog log;
    log.Write(60 * hour, 1, {Started, ProtocolActivated});
    EXPECT_EQ(FailuresOf(log.FinalReport()), Texts()); // nothing can come any more
}

TEST(TimerWatch, TellsOfEachAbsenceOnce)
{
    RegisteredLog log;
    for (auto at = 26; at < 40; ++at)
    {
        WriteWoken(log, at * hour, PushTask);
    }
    WriteWoken(log, 41 * hour, TimerTask);
    WriteWoken(log, 67 * hour, PushTask);
    WriteWoken(log, 68 * hour, PushTask);
    EXPECT_EQ(FailuresOf(log.FinalReport()),
              Texts{"push or timer: failed: More than a day passed without the daily timer. (2) 16..112"});
}

TEST(TimerWatch, ExpectsNoTimerBehindARemoval)
{
    for (auto const removal : {RemovalRequested, ExitRequested})
    {
        RegisteredLog log;
        log.Write(3, 2, {removal});
        WriteWoken(log, 30 * hour, PushTask);
        WriteWoken(log, 31 * hour, PushTask);
        for (auto const& text : FailuresOf(log.FinalReport()))
        {
            EXPECT_FALSE(text.starts_with("push or timer")) << text;
        }
    }
}

TEST(TimerWatch, RemarksThatNothingAtAllHasWokenTheApp)
{
    auto const remarks = [](double asOf) {
        RegisteredLog log;
        return RemarksOf(log.ReportAsOf(asOf));
    };
    EXPECT_EQ(remarks(25 * hour + 1), Texts());
    EXPECT_EQ(remarks(25 * hour + 2),
              Texts{"remark: Not even the daily timer has woken the app since the log's last line, for more than a "
                    "day. 16..21"});
}

namespace
{

// Pushes with one URI, and another URI behind them (line 17).
struct ChangedUriLog : StoryLog
{
    ChangedUriLog()
    {
        WriteStartForHelper(*this, 0);
        log().Write(1, 3, {ChannelUri, UriFound}); // 6
        WriteWoken(*this, 10, PushTask);           // 8 to 13
        uri = "https://host/?token=other";
        log().Write(20, 3, {ChannelUri, UriFound}); // 14
    }

  private:
    StoryLog& log() { return *this; }
};

} // namespace

TEST(PushWatch, RemarksThatNoPushCameSinceTheUriChanged)
{
    ChangedUriLog log;
    WriteWoken(log, day + 21, TimerTask); // 16 to 21
    EXPECT_EQ(RemarksOf(log.FinalReport()),
              Texts{"remark: No push has arrived since the channel's URI changed. 14..21"});
}

TEST(PushWatch, WaitsADay)
{
    ChangedUriLog log;
    log.Write(day + 20, 1, "a line");
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
}

TEST(PushWatch, IsContentWithAPush)
{
    ChangedUriLog log;
    WriteWoken(log, 30, PushTask);
    WriteWoken(log, 2 * day, TimerTask);
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
}

TEST(PushWatch, ExpectsNoPushWhereNoneCameBeforeOrTheUriIsTheSame)
{
    StoryLog none;
    WriteStartForHelper(none, 0);
    none.Write(1, 3, {ChannelUri, UriFound});
    none.uri = "https://host/?token=other";
    none.Write(2, 3, {ChannelUri, UriFound});
    none.Write(2 * day, 1, "a line");
    EXPECT_EQ(RemarksOf(none.FinalReport()), Texts());
    StoryLog same;
    WriteStartForHelper(same, 0);
    same.Write(1, 3, {ChannelUri, UriFound});
    WriteWoken(same, 10, PushTask);
    same.Write(20, 3, {ChannelUri, UriFound});
    same.Write(2 * day, 1, "a line");
    EXPECT_EQ(RemarksOf(same.FinalReport()), Texts());
}

TEST(ClosingWatch, IsContentWhereTheReplyIsOnItsWay)
{
    for (auto const answered : {UriFound, UriNotFound, ChannelThrew, ChannelRefusedSent, ChannelRefusedNotSent})
    {
        StoryLog log;
        log.Write(0, 2, {ChannelRequested});
        log.Write(1, 3, {answered});
        log.Write(2, 5, {ServiceCancelled, ServiceClosed});
        for (auto const& text : TextsOf(log.FinalReport()))
        {
            EXPECT_EQ(text.find("closed in the middle"), text.npos) << text;
        }
    }
    for (auto const answered : {RegistrationSignalled, RegistrationTimedOut})
    {
        StoryLog log;
        log.Write(0, 2, {RegistrationRequested, answered});
        log.Write(2, 5, {ServiceCancelled, ServiceClosed});
        for (auto const& text : TextsOf(log.FinalReport()))
        {
            EXPECT_EQ(text.find("closed in the middle"), text.npos) << text;
        }
    }
}

TEST(ClosingWatch, CountsAClosingOnceAndForgetsWhatAnEarlierProcessWaitedFor)
{
    StoryLog log;
    log.Write(0, 2, {ChannelRequested, ServiceCancelled, ServiceClosed, ChannelRequested});
    log.Write(1, 1, {Started});
    log.Write(2, 2, {ServiceClosed});
    auto const texts = FailuresOf(log.ReportAsOf(2));
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts[0], "service: failed: A connection was closed in the middle of a request. 1..2");
}

TEST(ClosingWatch, RemembersAFewRequests)
{
    StoryLog log;
    for (auto at = 0; at < 100; ++at)
    {
        log.Write(at * 0.1, 2, {ChannelRequested});
    }
    log.Write(11, 5, {ServiceClosed});
    auto const findings = log.ReportAsOf(11).stages[2].findings;
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].count, 16u);
}

TEST(ConnectionWatch, RemarksOnASecondHelper)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteConnected(log, 1); // 6 to 9
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts{"remark: A helper connected while another one was connected. 5..9"});
}

TEST(ConnectionWatch, IsContentWithOneHelperAfterTheOther)
{
    for (auto const closed : {ServiceClosed, ServiceCancelled, Started})
    {
        StoryLog log;
        WriteStartForHelper(log, 0);
        log.Write(1, 5, {closed});
        WriteConnected(log, 2);
        EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
    }
}

TEST(ClockWatch, RemarksOnAClockThatWasSetBack)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    WriteChannel(log, 10);
    log.Write(-3590, 1, {Launched}); // 15, an hour before
    log.Write(-3589, 1, {Exiting});
    auto const report = log.FinalReport();
    EXPECT_EQ(RemarksOf(report),
              Texts{"remark: The clock was set back: times before and after cannot be compared. 14..15"});
    EXPECT_EQ(FailuresOf(report), Texts());
}

TEST(ClockWatch, AllowsTwoThreadsToChangePlaces)
{
    StoryLog log;
    WriteStartForHelper(log, 10);
    log.Write(5.13, 2, "a line");
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
    StoryLog other;
    WriteStartForHelper(other, 10);
    other.Write(5.12, 2, "a line");
    EXPECT_EQ(RemarksOf(other.FinalReport()).size(), 1u);
}

TEST(ClockWatch, LetsNothingBeOverdueThatTheClockMadeLater)
{
    StoryLog log;
    log.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    log.Write(-3600, 1, "a line");
    log.Write(-3580, 7, {LaunchDone, TaskCompleted});
    EXPECT_EQ(FailuresOf(log.FinalReport()), Texts());
    StoryLog refused;
    refused.Write(0, 1, {Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    refused.Write(-3600, 1, "a line");
    refused.Write(-3560, 1, "another line");
    EXPECT_EQ(FailuresOf(refused.ReportAsOf(-3560)).size(), 2u);
}

TEST(Remarks, CountLinesThatWereWithheld)
{
    StoryLog log;
    log.Write(0, 1, {Started, ProtocolActivated, Withheld, Withheld});
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts{"remark: Lines were withheld because they held a token. (2) 3..4"});
}

// Copies

TEST(CopyWatch, RemarksOnARotation)
{
    StoryLog log(L"KZEB 2024-1-5 09-30-12.log");
    log.Write(0, 1, {Started, ProtocolActivated});
    log.Begin(L"KZEB.log");
    log.Write(1812, 1, {HeaderEdge});
    log.Write(1812, 1, {Started, ProtocolActivated});
    EXPECT_EQ(RemarksOf(log.FinalReport()),
              Texts{"remark: The log was rotated: it had come to its limit of size. 2..1"});
}

TEST(CopyWatch, RemarksOnACopyThatIsMissing)
{
    StoryLog log(L"KZEB 2024-1-5 09-30-12.log");
    log.Write(0, 1, {Started, ProtocolActivated});
    log.Begin(L"KZEB.log");
    log.Write(5000, 1, {HeaderEdge});
    EXPECT_EQ(RemarksOf(log.FinalReport()),
              (Texts{"remark: The log was rotated: it had come to its limit of size. 2..1",
                     "remark: A copy of the log is missing here. 2..1"}));
}

TEST(CopyWatch, DoesNotGuessWhereNoNameTellsATime)
{
    StoryLog log(L"first.log");
    log.Write(0, 1, {Started, ProtocolActivated});
    log.Begin(L"second.log");
    log.Write(5000, 1, {HeaderEdge});
    EXPECT_EQ(RemarksOf(log.FinalReport()).size(), 1u); // that it was rotated
}

TEST(CopyWatch, RemarksOnALogThatWasSetAside)
{
    StoryLog log(L"KZEB 2024-1-5 09-30-12.log");
    log.WriteOther("not of the app");
    log.Begin(L"KZEB.log");
    log.Write(1812, 1, {Started, ProtocolActivated});
    EXPECT_EQ(RemarksOf(log.FinalReport()),
              Texts{"remark: A log of another encoding was set aside, and a new one begun. 1"});
}

TEST(CopyWatch, TakesALogThatWasBegunLaterForNoSuccessorOfACopy)
{
    StoryLog log(L"KZEB 2024-1-5 09-30-12.log");
    log.Write(1805, 1, {Started, ProtocolActivated}); // its own name says nothing of its begin
    log.Begin(L"KZEB.log");
    log.Write(5000, 1, {Started, ProtocolActivated});
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
}

TEST(CopyWatch, RemarksOnALogThatBeginsInTheMiddle)
{
    for (auto const line : {HeaderEdge, Exiting})
    {
        StoryLog log;
        log.Write(0, 1, {line});
        EXPECT_EQ(RemarksOf(log.FinalReport()),
                  Texts{"remark: The log begins in the middle: what was before is not here. 1"});
    }
}

TEST(TimeOfCopy, IsInItsName)
{
    using doctor::TimeOfCopy;
    EXPECT_EQ(TimeOfCopy(L"a/KZEB 2024-1-5 09-30-12.log"), At(1812));
    EXPECT_EQ(TimeOfCopy(L"KZEB 2024-1-5 23-59-59.log"), At(15 * 3600 - 1));
    for (auto const* const name : {L"", L"KZEB.log", L"KZEB 2024-2-30 09-30-12.log", L"KZEB 2024-1-5 24-30-12.log",
                                   L"KZEB 2024-1-5 09-60-12.log", L"KZEB 2024-1-5 09-30-60.log",
                                   L"KZEB 2024-1-5 09-30-12.log.txt", L"KZEB 2024-1-5 09-30-12"})
    {
        EXPECT_EQ(TimeOfCopy(name), std::nullopt) << name;
    }
}
