#include "explore/stress/StressCount.h"

#include "explore/stress/StressLine.h"

#include <gtest/gtest.h>

using namespace explore::stress;

namespace
{

std::string Line(LineName name)
{
    return "01/05/24 09:30:12:045" + BehindDate(100 + name.life, MessageOf(name));
}

// A log of two processes: the first has written its lines 1 and 2, the second its line 1.
class StressCountTest : public testing::Test
{
  protected:
    StressCountTest()
    {
        record.lives = {{.thread = 100, .begun = 2, .acknowledged = 2}, {.thread = 101, .begun = 1, .acknowledged = 1}};
        record.header = {"***", "Bit: 64"};
        record.files = {{.name = "a.log"}};
        Write(Line({0, 1}));
        Write(Line({1, 1}));
        Write(Line({0, 2}));
    }

    LogText& Log() { return record.files.back(); }

    void Write(std::string const& text) { Log().lines.push_back({text, Log().lines.size() + 1}); }

    // A copy before the log, with its first lines. Returns its size.
    std::uint64_t Copy(std::size_t lines)
    {
        auto copy = Log();
        copy.name = "copy.log";
        copy.isCopy = true;
        copy.lines.resize(lines);
        copy.size = SizeOf(copy);
        record.files.insert(record.files.begin(), copy);
        return copy.size;
    }

    // The second process was killed while it wrote its line 2.
    void KillInFlight()
    {
        record.lives[1].begun = 2;
        record.lives[1].wasKilled = true;
    }

    // The same, while it looked at the size of a log of that size.
    void KillWhileChecking(std::uint64_t size)
    {
        KillInFlight();
        record.lives[1].wasChecking = true;
        record.lives[1].logSize = size;
    }

    StressCount Count()
    {
        for (auto& file : record.files)
        {
            if (file.size == 0)
            {
                file.size = SizeOf(file);
            }
        }
        return CountLines(record);
    }

    static std::uint64_t SizeOf(LogText const& file)
    {
        std::uint64_t size = 2;
        for (auto const& line : file.lines)
        {
            size += line.text.size() * 2 + (line.isComplete ? 4 : 0);
        }
        return size;
    }

    static void ExpectFirst(Found const& found, std::string const& first)
    {
        EXPECT_EQ(found.first, first);
        EXPECT_EQ(found.times, first.empty() ? 0u : 1u);
    }

    // Right, but for what the test says.
    static void ExpectWrong(StressCount const& count, std::string const& torn, std::string const& doubled = "",
                            std::string const& lost = "")
    {
        ExpectFirst(count.torn, torn);
        ExpectFirst(count.doubled, doubled);
        ExpectFirst(count.lost, lost);
        ExpectFirst(count.silent, "");
        ExpectFirst(count.unmarked, "");
    }

    StressRecord record;
};

} // namespace

TEST_F(StressCountTest, OfALogAsItShouldBeFindsNothing)
{
    auto const count = Count();
    ExpectWrong(count, "");
    EXPECT_EQ(count.lines, 3u);
    EXPECT_EQ(count.inFlight + count.cut + count.repeated + count.empty, 0u);
}

TEST_F(StressCountTest, OfALineThatIsMissingSaysWhichIsLost)
{
    Log().lines.pop_back();
    auto const count = Count();
    ExpectWrong(count, "", "", "line 2 of process 0 stands nowhere");
    EXPECT_EQ(count.lines, 2u);
}

TEST_F(StressCountTest, OfALineThatStandsThereTwiceSaysWhichIsDoubled)
{
    Write(Line({0, 1}));
    ExpectWrong(Count(), "", "line 1 of process 0 stands there 2 times");
}

TEST_F(StressCountTest, FindsALineInALogAndItsCopyDoubled)
{
    Copy(1);
    ExpectWrong(Count(), "", "line 1 of process 0 stands there 2 times");
}

TEST_F(StressCountTest, SaysWhereALineIsTorn)
{
    Write("01/05/24 rest of a line");
    ExpectWrong(Count(), "a.log, line 4: 01/05/24 rest of a line");
}

TEST_F(StressCountTest, FindsEachPartOfALineThatAnotherHasOverwrittenTorn)
{
    auto const whole = Line({0, 2});
    for (auto const at : {std::size_t{0}, std::size_t{5}, dateLength, dateLength + 5, whole.size() - 1})
    {
        Log().lines.back().text = whole;
        Log().lines.back().text[at] = '#';
        auto const count = Count();
        EXPECT_EQ(count.torn.times, 1u) << at;
        EXPECT_EQ(count.lost.times, 1u) << at;
    }
}

TEST_F(StressCountTest, FindsTwoLinesInOneTorn)
{
    Log().lines[1].text += Log().lines[2].text;
    Log().lines.pop_back();
    auto const count = Count();
    EXPECT_EQ(count.torn.times, 1u);
    EXPECT_EQ(count.lost.times, 2u);
}

TEST_F(StressCountTest, FindsBytesThatAreNoTextTorn)
{
    Log().lines[0].isDamaged = true;
    auto const count = Count();
    EXPECT_EQ(count.torn.times, 1u);
    EXPECT_EQ(count.lost.times, 1u);
}

TEST_F(StressCountTest, FindsALineThatNobodyHasBegunTorn)
{
    for (auto const name : {LineName{0, 3}, LineName{1, 2}, LineName{2, 1}, LineName{0, 0}})
    {
        Log().lines.resize(3);
        Write(Line(name));
        EXPECT_EQ(Count().torn.times, 1u);
    }
}

TEST_F(StressCountTest, FindsALineOfAnotherThreadTorn)
{
    Log().lines[0].text = "01/05/24 09:30:12:045" + BehindDate(101, MessageOf({0, 1}));
    auto const count = Count();
    EXPECT_EQ(count.torn.times, 1u);
    EXPECT_EQ(count.lost.times, 1u);
}

TEST_F(StressCountTest, FindsAnEmptyLineTorn)
{
    KillInFlight();
    Write("");
    ExpectWrong(Count(), "a.log, line 4: ");
}

TEST_F(StressCountTest, FindsALogThatEndsWithinALineTorn)
{
    Log().lines.back().isComplete = false;
    auto const count = Count();
    EXPECT_EQ(count.torn.times, 1u);
    EXPECT_EQ(count.lost.times, 1u);
}

TEST_F(StressCountTest, FindsBytesThatAreInNoLine)
{
    Log().size = SizeOf(Log()) - 2;
    auto const size = std::to_string(Log().size);
    ExpectWrong(Count(), "a.log has " + size + " bytes, its lines " + std::to_string(SizeOf(Log())));
}

TEST_F(StressCountTest, FindsALogWithoutItsMark)
{
    Log().isMarked = false;
    auto const count = Count();
    EXPECT_EQ(count.unmarked.first, "a.log");
    EXPECT_EQ(count.torn.times + count.lost.times, 0u);
}

TEST_F(StressCountTest, FindsAnEmptyLogWithoutItsMarkAndAllowsAnEmptyCopy)
{
    LogText const empty{.name = "empty.log", .isCopy = true, .isMarked = false};
    record.files.insert(record.files.begin(), empty);
    Log().size = SizeOf(Log());
    auto const allowed = CountLines(record);
    EXPECT_EQ(allowed.unmarked.times, 0u);
    EXPECT_EQ(allowed.empty, 1u);
    record.files[0].isCopy = false;
    auto const count = CountLines(record);
    EXPECT_EQ(count.unmarked.first, "empty.log");
    EXPECT_EQ(count.empty, 0u);
}

TEST_F(StressCountTest, SaysWhoIsSilent)
{
    record.lives[1].isSilent = true;
    record.lives[1].begun = 2;
    auto const count = Count();
    EXPECT_EQ(count.silent.times, 1u);
    EXPECT_EQ(count.silent.first, "process 1, from its line 2 on");
    EXPECT_EQ(count.lost.times, 0u);
}

TEST_F(StressCountTest, TakesTheHeadersLines)
{
    Write("01/05/24 09:30:12:045" + BehindDate(101, "***"));
    Write("01/05/24 09:30:12:045" + BehindDate(100, "Bit: 64"));
    ExpectWrong(Count(), "");
}

TEST_F(StressCountTest, FindsAHeadersLineOfNobodyTorn)
{
    Write("01/05/24 09:30:12:045" + BehindDate(102, "***"));
    EXPECT_EQ(Count().torn.times, 1u);
}

TEST_F(StressCountTest, FindsOtherTextTorn)
{
    Write("01/05/24 09:30:12:045" + BehindDate(100, "Bit: 32"));
    EXPECT_EQ(Count().torn.times, 1u);
}

TEST_F(StressCountTest, LetsALineInFlightBeThereOnce)
{
    KillInFlight();
    ExpectWrong(Count(), "");
    Write(Line({1, 2}));
    auto const count = Count();
    EXPECT_EQ(count.inFlight, 1u);
    EXPECT_EQ(count.lines, 3u);
    EXPECT_EQ(count.lost.times + count.doubled.times, 0u);
}

TEST_F(StressCountTest, FindsALineInFlightThatIsThereTwiceDoubled)
{
    KillInFlight();
    Write(Line({1, 2}));
    Write(Line({1, 2}));
    ExpectWrong(Count(), "", "line 2 of process 1 stands there 2 times");
}

TEST_F(StressCountTest, LetsTheBeginningOfALineInFlightBeThereOnce)
{
    KillInFlight();
    for (auto const length : {std::size_t{1}, dateLength, Line({1, 2}).size() - 1})
    {
        Log().lines.resize(3);
        Log().size = 0;
        Write(Line({1, 2}).substr(0, length));
        auto const count = Count();
        ExpectWrong(count, "");
        EXPECT_EQ(count.cut, 1u);
    }
    Write("01/05");
    EXPECT_EQ(Count().torn.first, "a.log, line 5: 01/05");
}

TEST_F(StressCountTest, LetsTheBeginningOfAHeaderBeThere)
{
    KillInFlight();
    Write("01/05/24 09:30:12:045" + BehindDate(101, "Bit"));
    auto const count = Count();
    ExpectWrong(count, "");
    EXPECT_EQ(count.cut, 1u);
}

TEST_F(StressCountTest, FindsTheBeginningOfALineOfOneThatWasNotKilledTorn)
{
    record.lives[1].begun = 2;
    Write(Line({1, 2}).substr(0, 30));
    EXPECT_EQ(Count().torn.times, 1u);
}

TEST_F(StressCountTest, FindsTheBeginningOfALineThatHadReturnedTorn)
{
    record.lives[1].wasKilled = true;
    Log().lines[1].text.pop_back();
    auto const count = Count();
    EXPECT_EQ(count.torn.times, 1u);
    EXPECT_EQ(count.lost.times, 1u);
}

TEST_F(StressCountTest, LetsACopyEndWithinALineInFlight)
{
    KillInFlight();
    record.files[0].isCopy = true;
    for (auto const& text : {Line({1, 2}), Line({1, 2}).substr(0, 30)})
    {
        Log().lines.resize(3);
        Log().size = 0;
        Log().lines.push_back({.text = text, .number = 4, .isComplete = false});
        ExpectWrong(Count(), "");
    }
    Log().isCopy = false;
    EXPECT_EQ(Count().torn.times, 1u);
}

TEST_F(StressCountTest, LetsACopyBeRepeatedForOneKilledWhileItChecked)
{
    KillWhileChecking(Copy(2));
    auto const count = Count();
    ExpectWrong(count, "");
    EXPECT_EQ(count.repeated, 1u);
    record.lives[1].wasChecking = false;
    EXPECT_EQ(Count().doubled.times, 2u);
}

TEST_F(StressCountTest, FindsAPartOfACopyDoubledThoughItEndsWithALine)
{
    KillWhileChecking(SizeOf(Log()));
    Copy(2);
    auto const count = Count();
    EXPECT_EQ(count.repeated, 0u);
    EXPECT_EQ(count.doubled.times, 2u);
}

TEST_F(StressCountTest, LetsOneCopyBeRepeatedForEachThatWasKilled)
{
    Copy(2);
    KillWhileChecking(Copy(2));
    auto const count = Count();
    EXPECT_EQ(count.repeated, 1u);
    EXPECT_EQ(count.doubled.times, 2u);
}

TEST_F(StressCountTest, FindsACopyThatEndsWithinALineThatHadReturnedTorn)
{
    KillInFlight();
    Log().isCopy = true;
    Log().lines.back().isComplete = false;
    EXPECT_EQ(Count().torn.times, 1u);
}

TEST_F(StressCountTest, FindsALogThatRepeatsItsCopyDoubled)
{
    KillWhileChecking(Copy(3));
    Log().lines.resize(2);
    auto const count = Count();
    EXPECT_EQ(count.repeated, 0u);
    EXPECT_EQ(count.doubled.times, 2u);
}

TEST_F(StressCountTest, TakesNoEmptyCopyForOneThatIsRepeated)
{
    KillWhileChecking(0);
    LogText const empty{.name = "empty.log", .isCopy = true, .isMarked = false};
    record.files.insert(record.files.begin(), empty);
    Log().size = SizeOf(Log());
    auto const count = CountLines(record);
    EXPECT_EQ(count.repeated, 0u);
    EXPECT_EQ(count.empty, 1u);
}
