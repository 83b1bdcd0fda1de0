#include "doctor/cli/ExitCode.h"
#include "doctor/live/MakeFinding.h"
#include "doctor/verdict/Report.h"

#include <gtest/gtest.h>

using doctor::Result;
using doctor::Stage;
using doctor::VerdictOf;

TEST(VerdictOf, FindingsIsThatOfTheOneThatCounts)
{
    auto const notSeen = doctor::MakeFinding(Stage::Woken, Result::NotSeen, "None.", "", "");
    auto const worked = doctor::Worked(Stage::Package, "It is there.");
    auto const open = doctor::CannotBeTold(Stage::Woken, "It waits.", "");
    auto const failed = doctor::Failed(Stage::Channel, "None.", "", "");
    EXPECT_EQ(VerdictOf({}), Result::NotSeen);
    EXPECT_EQ(VerdictOf({notSeen}), Result::NotSeen);
    EXPECT_EQ(VerdictOf({worked, notSeen}), Result::Worked);
    EXPECT_EQ(VerdictOf({worked, open, notSeen}), Result::CannotBeTold);
    EXPECT_EQ(VerdictOf({worked, open, failed}), Result::Failed);
}

TEST(VerdictOf, EachResultHasAnExitCode)
{
    EXPECT_EQ(static_cast<int>(doctor::ExitCodeOf(Result::Worked)), 0);
    EXPECT_EQ(static_cast<int>(doctor::ExitCodeOf(Result::Failed)), 3);
    EXPECT_EQ(static_cast<int>(doctor::ExitCodeOf(Result::CannotBeTold)), 4);
    EXPECT_EQ(static_cast<int>(doctor::ExitCodeOf(Result::NotSeen)), 4);
}
