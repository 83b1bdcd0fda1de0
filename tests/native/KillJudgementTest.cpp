#include "explore/kill/Judgement.h"

#include <gtest/gtest.h>

using namespace explore::kill;

namespace
{

std::u16string Line(std::u16string const& message, std::u16string const& thread = u"4")
{
    return u"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | " + thread + u" | " + message;
}

using Lines = std::vector<std::u16string>;

LogText Log(Lines lines, std::u16string rest = {})
{
    return {"KZEB.log", false, 100, true, std::move(lines), std::move(rest)};
}

LogText Copy(Lines lines)
{
    return {"KZEB 2024-1-5 09-30-12.log", true, 100, true, std::move(lines)};
}

// A process writes "begins" and "ends". The first one was ended when it had written "begins", the next one was not.
Facts Ordinary()
{
    Facts facts;
    facts.old = {Line(u"old", u"9")};
    facts.left = {Log({facts.old.front(), Line(u"begins")})};
    facts.end = {Log({facts.old.front(), Line(u"begins"), Line(u"begins", u"8"), Line(u"ends", u"8")})};
    facts.returned = {{4, 1}};
    facts.allowed = {u"begins", u"ends"};
    facts.again = facts.allowed;
    return facts;
}

// "KIND" or "KIND (RULE)", in order.
std::vector<std::string> FlawsOf(Facts const& facts)
{
    std::vector<std::string> flaws;
    for (auto const& [kind, what, rule] : Judge(facts).flaws)
    {
        auto& flaw = flaws.emplace_back(kind);
        if (!rule.empty())
        {
            flaw.append(" (").append(rule).append(")");
        }
    }
    return flaws;
}

using Flaws = std::vector<std::string>;

} // namespace

TEST(KillJudgementTest, FindsNothingWhereAllIsKept)
{
    EXPECT_EQ(FlawsOf(Ordinary()), Flaws{});
    EXPECT_EQ(Judge(Ordinary()).outcome, "1 lines left");
}

TEST(KillJudgementTest, FindsALineWhoseCallHasReturned)
{
    auto facts = Ordinary();
    facts.returned = {{4, 2}};
    EXPECT_EQ(FlawsOf(facts), Flaws{"lost"});
    facts.returned = {{4, 1}, {5, 1}};
    EXPECT_EQ(FlawsOf(facts), Flaws{"lost"});
}

TEST(KillJudgementTest, AllowsTheLineOfACallThatHasNot)
{
    auto facts = Ordinary();
    facts.returned = {};
    EXPECT_EQ(FlawsOf(facts), Flaws{});
}

TEST(KillJudgementTest, FindsALineTooManyOfAThread)
{
    auto facts = Ordinary();
    facts.left[0].lines.push_back(Line(u"begins"));
    facts.end[0].lines.push_back(Line(u"begins"));
    facts.returned = {};
    EXPECT_EQ(FlawsOf(facts), (Flaws{"doubled", "doubled"})); // by its thread, and by its text
}

TEST(KillJudgementTest, FindsALineThatTheAppDoesNotSay)
{
    auto facts = Ordinary();
    facts.left[0].lines[1] = Line(u"begi");
    facts.end[0].lines[1] = Line(u"begi");
    EXPECT_EQ(FlawsOf(facts), Flaws{"torn"});
}

TEST(KillJudgementTest, FindsTwoLinesInOne)
{
    auto facts = Ordinary();
    facts.left = {Log({facts.old.front()}, Line(u"begins"))};
    facts.end = {Log({facts.old.front(), Line(u"begins") + Line(u"begins", u"8"), Line(u"ends", u"8")})};
    // The first process's line is gone, the next one's has another text.
    EXPECT_EQ(FlawsOf(facts), (Flaws{"lost", "lost", "torn"}));
}

TEST(KillJudgementTest, AllowsALineThatTheNextProcessCompletes)
{
    auto facts = Ordinary();
    for (auto const* const end : {u"", u"\r"})
    {
        facts.left = {Log({facts.old.front()}, Line(u"begins") + end)};
        EXPECT_EQ(FlawsOf(facts), Flaws{});
        EXPECT_EQ(Judge(facts).outcome, "1 lines left, 1 of them unfinished");
    }
}

TEST(KillJudgementTest, FindsALineThatNobodyCompletes)
{
    auto facts = Ordinary();
    facts.end[0].rest = u"01/05";
    EXPECT_EQ(FlawsOf(facts), Flaws{"torn"});
    facts = Ordinary();
    facts.end[0].hasHalf = true;
    EXPECT_EQ(FlawsOf(facts), Flaws{"torn"});
}

TEST(KillJudgementTest, FindsALineThatTheNextProcessLoses)
{
    auto facts = Ordinary();
    facts.end[0].lines.erase(facts.end[0].lines.begin() + 1);
    EXPECT_EQ(FlawsOf(facts), Flaws{"lost"});
    facts = Ordinary();
    facts.end[0].lines.erase(facts.end[0].lines.begin());
    EXPECT_EQ(FlawsOf(facts), Flaws{"lost"});
}

TEST(KillJudgementTest, FindsALineOfTheNextProcessThatIsMissingOrTooMany)
{
    auto facts = Ordinary();
    facts.end[0].lines.pop_back();
    EXPECT_EQ(FlawsOf(facts), Flaws{"lost"});
    facts = Ordinary();
    facts.end[0].lines.push_back(Line(u"ends", u"8"));
    EXPECT_EQ(FlawsOf(facts), Flaws{"doubled"});
    facts.end[0].lines.back() = u"ends";
    EXPECT_EQ(FlawsOf(facts), Flaws{"torn"});
}

TEST(KillJudgementTest, FindsAProcessThatIsSilent)
{
    auto facts = Ordinary();
    facts.end = facts.left;
    EXPECT_EQ(FlawsOf(facts), Flaws{"silent"});
}

TEST(KillJudgementTest, FindsAFileWithoutItsMark)
{
    auto facts = Ordinary();
    facts.end.push_back({"KZEB 2024-1-5 09-30-12.log", true, 100, false});
    EXPECT_EQ(FlawsOf(facts), Flaws{"no mark"});
    facts.end.back().size = 0; // a copy may be empty
    EXPECT_EQ(FlawsOf(facts), Flaws{});
}

TEST(KillJudgementTest, FindsThatThereIsNoLog)
{
    auto facts = Ordinary();
    facts.end[0].isCopy = true;
    EXPECT_EQ(FlawsOf(facts), Flaws{"no log"});
}

TEST(KillJudgementTest, FindsAPartOfACopy)
{
    auto facts = Ordinary();
    facts.left.push_back(Copy({}));
    EXPECT_EQ(FlawsOf(facts), Flaws{"part of a copy"});
}

TEST(KillJudgementTest, AllowsLinesInCopyAndLogByTheRule)
{
    auto facts = Ordinary();
    facts.left = {Log({facts.old.front()}), Copy({facts.old.front()})};
    facts.returned = {};
    facts.end = {Log({Line(u"begins", u"8"), Line(u"ends", u"8")}), Copy({facts.old.front()}),
                 Copy({facts.old.front()})};
    EXPECT_EQ(FlawsOf(facts), (Flaws{"doubled (ended-before-emptying)", "doubled (ended-before-emptying)"}));
}

TEST(KillJudgementTest, FindsLinesInCopyAndLogWithoutTheRule)
{
    auto facts = Ordinary();
    facts.end.push_back(Copy({facts.old.front()}));
    EXPECT_EQ(FlawsOf(facts), Flaws{"doubled"});
}

TEST(KillJudgementTest, ExpectsAHeaderOfAProcessThatFindsTheLogAtItsLimit)
{
    auto facts = Ordinary();
    facts.isLogAtLimit = true;
    EXPECT_EQ(FlawsOf(facts), Flaws{"header"});
    facts.end[0].lines.push_back(Line(u"Bit: 64", u"8"));
    EXPECT_EQ(FlawsOf(facts), Flaws{});
    facts.isLogAtLimit = false;
    EXPECT_EQ(FlawsOf(facts), Flaws{"header"});
}

TEST(KillJudgementTest, FindsTasksThatAreNotRegisteredExactlyOnce)
{
    auto facts = Ordinary();
    facts.tasksMeant = {"push", "timer"};
    facts.tasks = {"timer", "push"};
    EXPECT_EQ(FlawsOf(facts), Flaws{});
    facts.tasks = {"timer", "push", "timer"};
    EXPECT_EQ(FlawsOf(facts), Flaws{"tasks"});
    facts.tasks = {"timer"};
    EXPECT_EQ(FlawsOf(facts), Flaws{"tasks"});
}

TEST(KillJudgementTest, TellsWhatWasFoundMeanwhile)
{
    auto facts = Ordinary();
    facts.troubles = {"hangs: the app does not come to its end"};
    EXPECT_EQ(FlawsOf(facts), Flaws{"hangs"});
}
