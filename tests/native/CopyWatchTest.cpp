#include "doctor/watches/CopyWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

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

TEST(CopyWatchTime, IsInItsName)
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
