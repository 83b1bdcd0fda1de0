#include "explore/faults/Judgement.h"

#include <gtest/gtest.h>

namespace
{

using namespace explore::faults;

Outcome SomeOutcome()
{
    return {.lines = {L"a", L"b"},
            .messages = {L"m"},
            .isAnswered = true,
            .response = L"r",
            .completions = 1,
            .tasksEnded = 1,
            .launches = {L"l"},
            .tasks = {L"t"},
            .uri = L"u",
            .waits = {L"3000"},
            .end = End::Exited,
            .code = 0};
}

std::string KindOf(Outcome const& expected, Outcome const& seen)
{
    return Compare(expected, {}, seen).kind;
}

TEST(FaultsJudgement, OfTheSameIsNothing)
{
    auto const [kind, what] = Compare(SomeOutcome(), {}, SomeOutcome());
    EXPECT_EQ(kind, "");
    EXPECT_EQ(what, "");
}

TEST(FaultsJudgement, NamesEachPartThatDiffers)
{
    struct
    {
        char const* kind;
        void (*change)(Outcome& outcome);
    } const parts[] = {
        {"lines", [](Outcome& outcome) { outcome.lines.emplace_back(L"c"); }},
        {"lines", [](Outcome& outcome) { outcome.lines.pop_back(); }},
        {"lines", [](Outcome& outcome) { std::swap(outcome.lines[0], outcome.lines[1]); }},
        {"end", [](Outcome& outcome) { outcome.end = End::Alive; }},
        {"end", [](Outcome& outcome) { outcome.code = 1; }},
        {"messages", [](Outcome& outcome) { outcome.messages.emplace_back(L"m"); }},
        {"launches", [](Outcome& outcome) { outcome.launches.clear(); }},
        {"waits", [](Outcome& outcome) { outcome.waits = {L"3001"}; }},
        {"completions", [](Outcome& outcome) { ++outcome.completions; }},
        {"tasks ended", [](Outcome& outcome) { --outcome.tasksEnded; }},
        {"tasks", [](Outcome& outcome) { outcome.tasks.emplace_back(L"t"); }},
        {"stored URI", [](Outcome& outcome) { outcome.uri.clear(); }},
        {"answer", [](Outcome& outcome) { outcome.isAnswered = false; }},
        {"response", [](Outcome& outcome) { outcome.response = L"s"; }},
    };
    for (auto const& [kind, change] : parts)
    {
        auto seen = SomeOutcome();
        change(seen);
        EXPECT_EQ(KindOf(SomeOutcome(), seen), kind);
        EXPECT_EQ(KindOf(seen, SomeOutcome()), kind);
    }
}

TEST(FaultsJudgement, ShowsWhatTheRulesSayAndWhatWasSeen)
{
    auto seen = SomeOutcome();
    seen.launches = {L"x", L"y"};
    EXPECT_EQ(Compare(SomeOutcome(), {}, seen).what, "  by the rules:\n    l\n  seen:\n    x\n    y");
    seen.launches.clear();
    EXPECT_EQ(Compare(SomeOutcome(), {}, seen).what, "  by the rules:\n    l\n  seen:\n    (nothing)");
}

TEST(FaultsJudgement, HoldsOfAProcessThatWasEndedItsLinesAndItsEnd)
{
    for (auto const end : {End::Terminated, End::Killed})
    {
        auto expected = SomeOutcome();
        expected.end = end;
        Outcome seen;
        seen.lines = expected.lines;
        seen.isAnswered = false;
        seen.end = end;
        EXPECT_EQ(KindOf(expected, seen), "");
        seen.lines.pop_back();
        EXPECT_EQ(KindOf(expected, seen), "lines");
        seen = expected;
        seen.end = End::Alive;
        EXPECT_EQ(KindOf(expected, seen), "end");
    }
}

TEST(FaultsJudgement, HoldsTheCodeOfAFailureButNotOfATermination)
{
    auto expected = SomeOutcome();
    expected.end = End::Failed;
    auto seen = expected;
    seen.code = 5;
    EXPECT_EQ(KindOf(expected, seen), "end");
    expected.end = seen.end = End::Terminated;
    EXPECT_EQ(KindOf(expected, seen), "");
}

TEST(FaultsJudgement, LetsLinesAsideStandAnywhereInTheirOrder)
{
    auto const holds = [](Texts lines) {
        auto seen = SomeOutcome();
        seen.lines = std::move(lines);
        return Compare(SomeOutcome(), {{L"x", L"y"}}, seen).kind.empty();
    };
    EXPECT_TRUE(holds({L"x", L"y", L"a", L"b"}));
    EXPECT_TRUE(holds({L"a", L"x", L"b", L"y"}));
    EXPECT_FALSE(holds({L"a", L"y", L"b", L"x"}));
    EXPECT_FALSE(holds({L"b", L"x", L"a", L"y"}));
    EXPECT_FALSE(holds({L"a", L"x", L"b"}));
    EXPECT_FALSE(holds({L"a", L"x", L"b", L"y", L"y"}));
}

TEST(FaultsJudgement, FindsTheInterleavingWhereTheFirstGuessIsWrong)
{
    EXPECT_TRUE(IsInterleaving({L"a", L"b", L"a", L"c"}, {{L"a", L"c"}, {L"a", L"b"}}));
    EXPECT_FALSE(IsInterleaving({L"a", L"a", L"c", L"b", L"b"}, {{L"a", L"c"}, {L"a", L"b"}}));
}

TEST(FaultsJudgement, LetsNoRequestStayOpenUnlessItMay)
{
    auto seen = SomeOutcome();
    seen.isAnswered = false;
    seen.end = End::Alive;
    EXPECT_EQ(HoldInvariants(seen, false).kind, "a request stays open");
    EXPECT_EQ(HoldInvariants(seen, true).kind, "");
    seen.end = End::Exited;
    EXPECT_EQ(HoldInvariants(seen, false).kind, "");
}

TEST(FaultsJudgement, LetsARequestHaveTwoMessagesAndThreeCompletions)
{
    auto seen = SomeOutcome();
    seen.messages = {L"m", L"n"};
    seen.completions = 3;
    EXPECT_EQ(HoldInvariants(seen, false).kind, "");
    seen.completions = 4;
    EXPECT_EQ(HoldInvariants(seen, false).kind, "too many messages or completions");
    seen.completions = 3;
    seen.messages.emplace_back(L"o");
    EXPECT_EQ(HoldInvariants(seen, false).kind, "too many messages or completions");
}

} // namespace
