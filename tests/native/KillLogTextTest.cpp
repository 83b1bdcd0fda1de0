#include "explore/kill/LogText.h"

#include <gtest/gtest.h>

using namespace explore::kill;

namespace
{

std::string Bytes(std::u16string const& text)
{
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(char16_t)};
}

LogText Read(std::string const& bytes)
{
    return ReadLogText("KZEB.log", false, bytes);
}

using Lines = std::vector<std::u16string>;

} // namespace

TEST(KillLogTextTest, HasTheLinesBehindTheMark)
{
    auto const log = Read("\xFF\xFE" + Bytes(u"one\r\ntwo\r\n"));
    EXPECT_TRUE(log.hasMark);
    EXPECT_EQ(log.lines, (Lines{u"one", u"two"}));
    EXPECT_EQ(log.rest, u"");
    EXPECT_FALSE(log.hasHalf);
}

TEST(KillLogTextTest, HasNoLinesWithoutTheMark)
{
    auto const log = Read(Bytes(u"one\r\n"));
    EXPECT_FALSE(log.hasMark);
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(log.size, 10u);
}

TEST(KillLogTextTest, LeavesAHoleOut)
{
    for (std::size_t units = 1; units < 20; ++units)
    {
        auto const hole = std::string(units * 2, '\0');
        EXPECT_EQ(Read("\xFF\xFE" + Bytes(u"one\r\n") + hole + Bytes(u"two\r\n")).lines, (Lines{u"one", u"two"}));
    }
}

TEST(KillLogTextTest, HasWhatIsUnfinishedAsRest)
{
    EXPECT_EQ(Read("\xFF\xFE" + Bytes(u"one\r\ntw\r")).rest, u"tw\r");
    auto const halved = Read("\xFF\xFE" + Bytes(u"tw") + "o");
    EXPECT_EQ(halved.rest, u"tw");
    EXPECT_TRUE(halved.hasHalf);
}

TEST(KillLogTextTest, TakesALineEndForOneAtWholeCharactersOnly)
{
    auto const shifted = std::string("\x01\x0D\x00\x0A\x00\x02", 6); // three characters, none of them a line's end
    EXPECT_TRUE(Read("\xFF\xFE" + shifted).lines.empty());
    EXPECT_EQ(Read("\xFF\xFE" + shifted + Bytes(u"\r\n")).lines.size(), 1u);
}

TEST(KillLogTextTest, TakesALineApart)
{
    auto const fields = FieldsOf(u"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 4660 | a | b");
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->thread, 4660u);
    EXPECT_EQ(fields->message, u"a | b");
}

TEST(KillLogTextTest, TakesNoOtherTextForALine)
{
    for (auto const* const text :
         {u"", u"an old line", u"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 4660",
          u"1/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 4660 | a",
          u"01/05/24 09:30:12:045 | [INF] |  | ZEB | ZEB | ZEBMain |  | ZEB | 4660 | a",
          u"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | x | a"})
    {
        EXPECT_FALSE(FieldsOf(text)) << Narrow(text);
    }
}

TEST(KillLogTextTest, KnowsTheLinesOfAHeader)
{
    EXPECT_TRUE(IsHeader(u"*****"));
    EXPECT_TRUE(IsHeader(u"OS Name: Windows 11"));
    EXPECT_FALSE(IsHeader(u"****************************** VelmoNotificationCLient Started. *********"));
    EXPECT_FALSE(IsHeader(u"Inside OnLaunched"));
}
