#include "doctor/watches/ClosingWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

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
