#include "doctor/watches/RegistrationWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

namespace
{

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
    EXPECT_FALSE(report.summary.find("it has worked since") != std::string::npos) << report.summary;
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
    EXPECT_FALSE(report.summary.find("it has worked since") != std::string::npos) << report.summary;
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
