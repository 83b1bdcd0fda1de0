#include "doctor/watches/ClockWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

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
