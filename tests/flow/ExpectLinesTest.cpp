#include "tests/support/ExpectLines.h"

#include "tests/flow/Lines.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace
{

using test::ExpectInterleaved;
using test::ExpectLines;
using test::Lines;

// What a comparison says that fails.
class ExpectLinesTest : public testing::Test
{
  protected:
    static testing::TestPartResult FailureOf(std::function<void()> const& compare)
    {
        testing::TestPartResultArray results;
        {
            testing::ScopedFakeTestPartResultReporter const reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
            compare();
        }
        EXPECT_EQ(results.size(), 1);
        return results.GetTestPartResult(0);
    }

    static void ExpectFailure(std::function<void()> const& compare, std::string const& message)
    {
        EXPECT_EQ(FailureOf(compare).message(), "Failed\n" + message + "\n");
    }
};

TEST_F(ExpectLinesTest, MarkTheOneThatDiffersAmongItsNeighbours)
{
    ExpectFailure(
        [] {
            ExpectLines({L"1", L"2", L"3", L"4", L"other\u2026", L"6"},
                        {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9"});
        },
        "expected:\n"
        "    ...\n"
        "    2  2\n"
        "    3  3\n"
        "    4  4\n"
        ">   5  5\n"
        "    6  6\n"
        "    7  7\n"
        "    8  8\n"
        "    ...\n"
        "found:\n"
        "    ...\n"
        "    2  2\n"
        "    3  3\n"
        "    4  4\n"
        ">   5  other\xE2\x80\xA6\n"
        "    6  6");
}

TEST_F(ExpectLinesTest, MarkTheEndWhereOneIsMissing)
{
    ExpectFailure([] { ExpectLines({L"1"}, {L"1", L"2"}); }, "expected:\n"
                                                             "    1  1\n"
                                                             ">   2  2\n"
                                                             "found:\n"
                                                             "    1  1\n"
                                                             ">      (nothing more)");
}

TEST_F(ExpectLinesTest, MarkOneTooMany)
{
    ExpectFailure([] { ExpectLines(Lines{L"1"}, Lines{}); }, "expected:\n"
                                                             ">      (nothing more)\n"
                                                             "found:\n"
                                                             ">   1  1");
}

TEST_F(ExpectLinesTest, OfTwoThreadsMarkWhatEachOfThemMightHaveSaid)
{
    ExpectFailure([] { ExpectInterleaved({L"first", L"b", L"a", L"c"}, {{L"first"}, {L"a", L"a2"}, {L"b", L"b2"}}); },
                  "expected:\n"
                  "    1  first\n"
                  ">      (nothing more)\n"
                  "expected then, of one thread:\n"
                  "    1  a\n"
                  ">   2  a2\n"
                  "and of another one, before, between or behind:\n"
                  "    1  b\n"
                  ">   2  b2\n"
                  "found:\n"
                  "    1  first\n"
                  "    2  b\n"
                  "    3  a\n"
                  ">   4  c");
}

TEST_F(ExpectLinesTest, OfTwoThreadsMayComeInEachOrderOfTheirs)
{
    test::InterleavedLines const expected = {{L"first"}, {L"same", L"a"}, {L"same", L"b"}};
    ExpectInterleaved({L"first", L"same", L"a", L"same", L"b"}, expected);
    ExpectInterleaved({L"first", L"same", L"b", L"same", L"a"}, expected);
    ExpectInterleaved({L"first", L"same", L"same", L"b", L"a"}, expected);
}

TEST_F(ExpectLinesTest, OfTwoThreadsDoNotComeBeforeTheCommonOnesAreOver)
{
    auto const failure = FailureOf([] { ExpectInterleaved({L"a", L"first"}, {{L"first"}, {L"a"}, {}}); });
    EXPECT_NE(std::string(failure.message()).find("found:\n>   1  a"), std::string::npos);
}

TEST_F(ExpectLinesTest, NameThePlaceOfTheCallThatFails)
{
    unsigned line = 0;
    auto const failure = FailureOf([&] {
        line = std::source_location::current().line() + 1;
        ExpectLines({L"1"}, {L"2"});
    });
    EXPECT_TRUE(std::string(failure.file_name()).ends_with("ExpectLinesTest.cpp")) << failure.file_name();
    EXPECT_EQ(failure.line_number(), static_cast<int>(line));
}

} // namespace
