#include "doctor/stories/Remark.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

TEST(Remarks, CountLinesThatWereWithheld)
{
    StoryLog log;
    log.Write(0, 1, {Started, ProtocolActivated, Withheld, Withheld});
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts{"remark: Lines were withheld because they held a token. (2) 3..4"});
}

// Copies
