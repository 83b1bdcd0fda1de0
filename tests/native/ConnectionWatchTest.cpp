#include "doctor/watches/ConnectionWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

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
