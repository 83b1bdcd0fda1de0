#include "explore/log/Verdict.h"
#include "explore/log/LineForm.h"
#include "explore/log/Story.h"

#include <gtest/gtest.h>

using namespace explore;

namespace
{

// What there is after a play, put together by hand.
class VerdictTest : public testing::Test
{
  protected:
    VerdictTest()
    {
        files.CreateFolder(L"C:\\Temp");
        files.CreateFolder(L"C:\\Temp\\Tessaline");
        files.CreateFolder(L"C:\\Temp\\Tessaline\\HOV");
    }

    static std::string Bytes(std::wstring const& text)
    {
        return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)};
    }

    // A message as a process writes it, at some time.
    static std::wstring Line(std::wstring const& message) { return L"01/05/24 09:30:12" + FormOf(message).substr(17); }

    static std::wstring Header() { return L"01/05/24 09:30:12" + FormOfHeader().substr(17); }

    static std::wstring Lines(std::vector<std::wstring> const& lines)
    {
        std::wstring text;
        for (auto const& line : lines)
        {
            text += line + L"\r\n";
        }
        return text;
    }

    void PutLog(std::wstring const& text) { files.Put(logPath, FileContent("\xFF\xFE" + Bytes(text))); }
    void PutCopy(std::string const& bytes) { files.Put(copyPath, FileContent(bytes)); }
    void PutCopy(std::wstring const& text) { PutCopy("\xFF\xFE" + Bytes(text)); }

    // "KIND" for each flaw by no rule, "KIND by RULE" for the others.
    std::vector<std::string> Flaws() const
    {
        std::vector<std::string> flaws;
        for (auto const& [kind, what, rule] : Judge(record).flaws)
        {
            flaws.push_back(rule.empty() ? kind : kind + " by " + rule);
        }
        return flaws;
    }

    using Expected = std::vector<std::string>;

    std::wstring const copyPath = L"c:\\temp\\tessaline\\hov\\kzeb 2024-1-5 09-30-12.log";
    Files files;
    LogRecord record{files};
};

constexpr bool returned = true;
constexpr bool killed = false;

} // namespace

TEST_F(VerdictTest, FindsNothingWhereEachLineStandsThereOnce)
{
    record.lines = {{L"a", returned}, {L"b", returned}, {L"old", returned, false, true}};
    PutCopy(Lines({L"old", Line(L"a")}));
    PutLog(Lines({Header(), Line(L"b")}));
    EXPECT_EQ(Flaws(), Expected());
    EXPECT_EQ(Judge(record).outcome, "2 lines, 1 copies");
}

TEST_F(VerdictTest, FindsThatThereIsNoLog)
{
    EXPECT_EQ(Flaws(), Expected{"no log"});
}

TEST_F(VerdictTest, TellsWhatWasFoundMeanwhile)
{
    PutLog(L"");
    record.troubles = {"silent: A", "handle open: B"};
    EXPECT_EQ(Flaws(), (Expected{"silent", "handle open"}));
}

TEST_F(VerdictTest, FindsALineThatIsLost)
{
    record.lines = {{L"a", returned}};
    PutLog(L"");
    EXPECT_EQ(Flaws(), Expected{"lost"});
}

TEST_F(VerdictTest, LetsALineBeMissingWhoseCallHasNotReturned)
{
    record.lines = {{L"a", killed}};
    PutLog(L"");
    EXPECT_EQ(Flaws(), Expected());
}

TEST_F(VerdictTest, FindsOldContentThatIsLost)
{
    record.lines = {{L"old", returned, false, true}};
    PutLog(L"");
    EXPECT_EQ(Flaws(), Expected{"lost"});
}

TEST_F(VerdictTest, FindsOldContentThatIsDoubled)
{
    record.lines = {{L"old", returned, false, true}};
    PutCopy(Lines({L"old"}));
    PutLog(Lines({L"old"}));
    EXPECT_EQ(Flaws(), Expected{"doubled"});
}

TEST_F(VerdictTest, LosesALineByRuleThatDidNotFit)
{
    record.lines = {{L"a", returned, true}};
    PutLog(L"");
    EXPECT_EQ(Flaws(), Expected{"lost by full-at-a-line"});
}

// Another cut copy is no reason.
TEST_F(VerdictTest, LosesByRuleTheLinesThatATakingNamesAlone)
{
    record.lines = {{L"a", returned}, {L"b", returned}, {L"old", returned, false, true}};
    record.missing = {{rule::fullAtRotation, {Line(L"a")}}, {rule::copyOfSameSecond, {L"old"}}};
    record.cut = {copyPath};
    PutCopy("\xFF\xFE");
    PutLog(L"");
    EXPECT_EQ(Flaws(), (Expected{"lost by full-at-a-rotation", "lost", "lost by copy-of-the-same-second"}));
}

TEST_F(VerdictTest, LetsTheLinesOfACopyBeMissingThatIsNotKept)
{
    record.lines = {{L"copied 1", returned, false, true}, {L"copied 2", returned, false, true}};
    record.cleanedUp = {L"copied 1"};
    PutLog(L"");
    EXPECT_EQ(Flaws(), Expected{"lost"});
}

TEST_F(VerdictTest, FindsALineThatIsDoubled)
{
    record.lines = {{L"a", returned}, {L"b", killed}};
    PutCopy(Lines({Line(L"a"), Line(L"b")}));
    PutLog(Lines({Line(L"a"), Line(L"b")}));
    EXPECT_EQ(Flaws(), (Expected{"doubled", "doubled"}));
}

TEST_F(VerdictTest, DoublesByRuleTheLinesThatStoodInBothAlone)
{
    record.lines = {{L"a", returned}, {L"b", returned}};
    record.doubled = {{rule::endedBeforeEmptying, {Line(L"a")}}};
    PutCopy(Lines({Line(L"a"), Line(L"b")}));
    PutLog(Lines({Line(L"a"), Line(L"b")}));
    EXPECT_EQ(Flaws(), (Expected{"doubled by ended-before-emptying", "doubled"}));
}

TEST_F(VerdictTest, FindsALineThatIsTorn)
{
    record.lines = {{L"a", returned}};
    PutLog(Lines({L"01/05", Line(L"a")}));
    EXPECT_EQ(Flaws(), Expected{"torn"});
}

// A whole line has a date and a time.
TEST_F(VerdictTest, FindsALineWhoseTimeIsTorn)
{
    record.lines = {{L"a", returned}};
    auto line = Line(L"a");
    line[3] = L'/';
    PutLog(Lines({line}));
    EXPECT_EQ(Flaws(), (Expected{"torn", "lost"}));
}

TEST_F(VerdictTest, CutsByRuleTheLineOfAKilledProcessWhereTheLogWasFull)
{
    record.lines = {{L"text", killed}};
    record.cut = {std::wstring(logPath)};
    PutLog(Lines({Line(L"text").substr(0, Line(L"text").size() - 1)})); // unlike the header
    EXPECT_EQ(Flaws(), Expected{"torn by full-at-a-line"});
}

TEST_F(VerdictTest, CutsByRuleTheHeaderOfAKilledProcessWhereTheLogWasFull)
{
    record.cut = {std::wstring(logPath)};
    PutLog(Lines({Header().substr(0, Header().size() - 1)}));
    EXPECT_EQ(Flaws(), Expected{"torn"});
    record.lines = {{L"a", killed}};
    EXPECT_EQ(Flaws(), Expected{"torn by full-at-a-line"});
}

TEST_F(VerdictTest, CutsNoLineByRuleWhereTheLogWasNotFull)
{
    record.lines = {{L"a", killed}};
    record.cut = {copyPath};
    PutLog(Lines({Line(L"a").substr(0, 30)}));
    EXPECT_EQ(Flaws(), Expected{"torn"});
}

TEST_F(VerdictTest, CutsNoLineByRuleWhoseCallHasReturned)
{
    record.lines = {{L"a", returned, true}};
    record.cut = {std::wstring(logPath)};
    PutLog(Lines({Line(L"a").substr(0, 30)}));
    EXPECT_EQ(Flaws(), (Expected{"torn", "lost by full-at-a-line"}));
}

TEST_F(VerdictTest, FindsALogThatEndsWithinALine)
{
    record.lines = {{L"a", killed}};
    PutLog(Line(L"a"));
    EXPECT_EQ(Flaws(), Expected{"torn"});
}

TEST_F(VerdictTest, FindsALogThatEndsWithinACharacter)
{
    files.Put(logPath, FileContent("\xFF\xFE\x30"));
    EXPECT_EQ(Flaws(), Expected{"torn"});
}

TEST_F(VerdictTest, LetsACopyEndWithinTheLineOfAKilledProcess)
{
    record.lines = {{L"a", killed}};
    PutLog(L"");
    PutCopy(Line(L"a"));
    EXPECT_EQ(Flaws(), Expected{"torn by ended-within-a-line"});
}

TEST_F(VerdictTest, FindsACopyThatEndsWithinALineWhoseCallHasReturned)
{
    record.lines = {{L"a", returned, true}};
    PutLog(L"");
    PutCopy(Line(L"a"));
    EXPECT_EQ(Flaws(), (Expected{"torn", "lost by full-at-a-line"}));
}

TEST_F(VerdictTest, LetsACopyEndWithinALineThatIsCutItself)
{
    record.lines = {{L"a", returned}};
    record.missing = {{rule::fullAtRotation, {Line(L"a")}}};
    record.cut = {copyPath};
    PutLog(L"");
    PutCopy(Line(L"a").substr(0, 9));
    EXPECT_EQ(Flaws(), (Expected{"torn by full-at-a-rotation", "lost by full-at-a-rotation"}));
}

TEST_F(VerdictTest, FindsALogWithoutItsMark)
{
    files.Put(logPath, FileContent(Bytes(Lines({Line(L"a")}))));
    record.cut = {std::wstring(logPath)};
    EXPECT_EQ(Flaws(), Expected{"no mark"});
}

TEST_F(VerdictTest, FindsACopyWithoutItsMark)
{
    PutLog(L"");
    PutCopy(std::string("text"));
    EXPECT_EQ(Flaws(), Expected{"no mark"});
}

TEST_F(VerdictTest, LetsACopyBeWithoutItsMarkThatIsCut)
{
    PutLog(L"");
    PutCopy(std::string("text"));
    record.cut = {L"c:\\temp\\tessaline\\hov\\kzeb 2024-1-5 09-30-13.log"};
    EXPECT_EQ(Flaws(), Expected{"no mark"});
    record.cut = {copyPath};
    EXPECT_EQ(Flaws(), Expected{"no mark by full-at-a-rotation"});
}

TEST_F(VerdictTest, FindsAPartOfACopy)
{
    PutLog(L"");
    PutCopy("\xFF\xFE" + std::string(4094, '\0'));
    EXPECT_EQ(Flaws(), Expected{"part of a copy"});
    record.cut = {copyPath};
    EXPECT_EQ(Flaws(), Expected{"part of a copy by full-at-a-rotation"});
}

TEST_F(VerdictTest, FindsTextInAnotherEncodingThatIsLost)
{
    PutLog(L"");
    PutCopy(std::string(otherEncoding));
    record.otherText = otherEncoding;
    EXPECT_EQ(Flaws(), Expected());
    files.Find(copyPath)->content = FileContent();
    EXPECT_EQ(Flaws(), Expected{"other text"});
}

TEST_F(VerdictTest, FindsTextInAnotherEncodingThatIsDoubled)
{
    PutLog(L"");
    PutCopy(std::string(otherEncoding));
    files.Put(L"c:\\temp\\tessaline\\hov\\kzeb 2024-1-5 09-30-13.log", FileContent(std::string(otherEncoding)));
    record.otherText = otherEncoding;
    EXPECT_EQ(Flaws(), Expected{"other text"});
}

TEST_F(VerdictTest, FindsAFileElsewhereThatIsChangedOrDeleted)
{
    PutLog(L"");
    files.Put(L"c:\\temp\\target", FileContent("not a log"));
    record.otherFiles[L"c:\\temp\\target"] = "not a log";
    EXPECT_EQ(Flaws(), Expected());
    files.Find(L"c:\\temp\\target")->content = FileContent("a log");
    EXPECT_EQ(Flaws(), Expected{"other file"});
    files.Delete(L"c:\\temp\\target");
    EXPECT_EQ(Flaws(), Expected{"other file"});
}
