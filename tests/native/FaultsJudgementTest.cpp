#include "explore/faults/Judgement.h"

#include "explore/faults/Plays.h"
#include "tests/native/FaultsFlows.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace
{

using namespace explore::faults;

Outcome SomeOutcome()
{
    return {.lines = {L"a", L"b"},
            .calls = {L"x", L"y"},
            .messages = {L"m"},
            .answers = {{true, L"r"}},
            .completions = {1},
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
        {"completions", [](Outcome& outcome) { ++outcome.completions.front(); }},
        {"tasks ended", [](Outcome& outcome) { --outcome.tasksEnded; }},
        {"tasks", [](Outcome& outcome) { outcome.tasks.emplace_back(L"t"); }},
        {"stored URI", [](Outcome& outcome) { outcome.uri.clear(); }},
        {"answers", [](Outcome& outcome) { outcome.answers.front().isGiven = false; }},
        {"answers", [](Outcome& outcome) { outcome.answers.clear(); }},
        {"responses", [](Outcome& outcome) { outcome.answers.front().response = L"s"; }},
        {"calls", [](Outcome& outcome) { outcome.calls.pop_back(); }},
        {"calls", [](Outcome& outcome) { std::swap(outcome.calls[0], outcome.calls[1]); }},
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
        seen.calls = expected.calls;
        seen.answers = {{false}};
        seen.end = end;
        EXPECT_EQ(KindOf(expected, seen), "");
        seen.lines.pop_back();
        EXPECT_EQ(KindOf(expected, seen), "lines");
        seen = expected;
        seen.end = End::Alive;
        EXPECT_EQ(KindOf(expected, seen), "end");
    }
}

TEST(FaultsJudgement, HoldsTheCodeOfAnEnd)
{
    for (auto const end : {End::Failed, End::NotStarted, End::Terminated})
    {
        auto expected = SomeOutcome();
        expected.end = end;
        expected.code = Results::failed;
        auto seen = expected;
        EXPECT_EQ(KindOf(expected, seen), "");
        seen.code = 0;
        EXPECT_EQ(KindOf(expected, seen), "end");
    }
}

TEST(FaultsJudgement, LetsLinesAsideStandAnywhereInTheirOrder)
{
    auto const holds = [](Texts lines) {
        auto seen = SomeOutcome();
        seen.lines = std::move(lines);
        return Compare(SomeOutcome(), {{.lines = {L"x", L"y"}}}, seen).kind.empty();
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

TEST(FaultsJudgement, LetsCallsAsideStandAnywhereInTheirOrder)
{
    auto seen = SomeOutcome();
    seen.calls = {L"x", L"p", L"y", L"q"};
    EXPECT_EQ(Compare(SomeOutcome(), {{.calls = {L"p", L"q"}}}, seen).kind, "");
    EXPECT_EQ(Compare(SomeOutcome(), {{.calls = {L"q", L"p"}}}, seen).kind, "calls");
}

// --- invariants ------------------------------------------------------------------------------------------------------

TEST(FaultsJudgement, HoldsEachPartAgainstOneOfTheOrders)
{
    auto const one = SomeOutcome();
    auto other = SomeOutcome();
    other.lines = {L"c"};
    other.messages.clear();
    other.end = End::Terminated;
    other.code = Results::failed;
    EXPECT_EQ(HoldInvariants(one, {one, other}).kind, "");
    EXPECT_EQ(HoldInvariants(other, {one, other}).kind, "");
    auto mixed = one;
    mixed.messages.clear();
    EXPECT_EQ(HoldInvariants(mixed, {one, other}).kind, "");
    EXPECT_EQ(HoldInvariants(mixed, {one}).kind, "messages against the rules");
}

TEST(FaultsJudgement, FindsWhatNoOrderLeadsTo)
{
    struct
    {
        char const* kind;
        void (*change)(Outcome& outcome);
    } const rows[] = {
        {"a line against the rules", [](Outcome& outcome) { outcome.lines.emplace_back(L"c"); }},
        {"a line against the rules", [](Outcome& outcome) { outcome.lines.emplace_back(L"a"); }},
        {"an end against the rules", [](Outcome& outcome) { outcome.end = End::Terminated; }},
        {"an end against the rules", [](Outcome& outcome) { outcome.code = Results::failed; }},
        {"a line after the end", [](Outcome& outcome) { outcome.linesAtExit = 1; }},
        {"messages against the rules", [](Outcome& outcome) { outcome.messages.emplace_back(L"n"); }},
        {"completions against the rules", [](Outcome& outcome) { ++outcome.completions.front(); }},
        {"tasks ended against the rules", [](Outcome& outcome) { outcome.tasksEnded = 0; }},
        {"answers against the rules", [](Outcome& outcome) { outcome.answers.front().isGiven = false; }},
        {"launches against the rules", [](Outcome& outcome) { outcome.launches.emplace_back(L"l"); }},
    };
    for (auto const& [kind, change] : rows)
    {
        auto seen = SomeOutcome();
        change(seen);
        EXPECT_EQ(HoldInvariants(seen, {SomeOutcome()}).kind, kind);
    }
}

TEST(FaultsJudgement, LetsTheLastLineStandBeforeTheEnd)
{
    auto seen = SomeOutcome();
    seen.linesAtExit = seen.lines.size();
    EXPECT_EQ(HoldInvariants(seen, {SomeOutcome()}).kind, "");
}

// --- whole plays -----------------------------------------------------------------------------------------------------

TEST(FaultsJudgement, AgreesWithWhatTheRulesSay)
{
    for (auto const& flow : {test::StartUpFlow(), test::PushFlow(), test::RequestFlow(L"UnregisterBackgroundTask")})
    {
        for (auto const& play : SinglePlays(flow))
        {
            auto const deviations = *WaysIn(play);
            Reckoning reckoning(flow.scene, deviations);
            reckoning.Run(flow.rules, flow.role, flow.second);
            if (reckoning.Asides().empty() && !reckoning.Lost())
            {
                EXPECT_EQ(Judge(flow, deviations, reckoning.Result()).what, "") << explore::TextOf(play);
            }
        }
    }
}

TEST(FaultsJudgement, HoldsACallThatIsMissing)
{
    auto const flow = test::RequestFlow(L"UnregisterBackgroundTask");
    auto seen = test::Reckoned(flow);
    seen.calls.erase(seen.calls.begin() + 10);
    EXPECT_EQ(Judge(flow, {}, seen).kind, "calls");
}

// The handlers of the loss stand together, where all others wait for them.
TEST(FaultsJudgement, HoldsTheHandlersOfALossWhereItComes)
{
    auto const flow = test::RequestFlow(L"unknown");
    std::vector<WayAt> const deviations = {{3, {Way::Kind::TaskCancelled}}};
    auto seen = test::Reckoned(flow, deviations);
    seen.lines.push_back(L"[INFO] AppService Inside OnTaskCanceled VelmoNotificationClient "
                         L"UwpNotificationAppService::OnTaskCanceled deferral complete");
    Texts const calls = {L"BackgroundTaskDeferral.Complete", L"AppServiceConnection.Close"};
    seen.calls.insert(seen.calls.begin() + 4, calls.begin(), calls.end());
    EXPECT_EQ(Judge(flow, deviations, seen).what, "");
    std::swap(seen.calls[4], seen.calls[5]);
    EXPECT_EQ(Judge(flow, deviations, seen).kind, "handlers");
    std::swap(seen.calls[4], seen.calls[5]);
    std::rotate(seen.calls.begin() + 3, seen.calls.begin() + 4, seen.calls.begin() + 6);
    EXPECT_EQ(Judge(flow, deviations, seen).kind, "handlers");
}

TEST(FaultsJudgement, HoldsOfHandlersAllThatTheyDoNotDo)
{
    auto const flow = test::CancelFlow();
    auto seen = test::Reckoned(flow);
    seen.lines = {L"[INFO] AppService Inside OnTaskCanceled VelmoNotificationClient "
                  L"UwpNotificationAppService::OnTaskCanceled deferral complete"};
    seen.calls = {L"BackgroundTaskDeferral.Complete", L"AppServiceConnection.Close"};
    seen.tasksEnded = 1;
    EXPECT_EQ(Judge(flow, {}, seen).what, "");
    seen.messages = {L"1: NewMessage=x"};
    EXPECT_EQ(Judge(flow, {}, seen).kind, "messages");
}

TEST(FaultsJudgement, IsExactWhereWhatFollowsHasOneOrder)
{
    auto const request = test::RequestFlow(L"GetChannelUri");
    auto const two = test::TwoRequestsFlow(L"RegisterBackgroundTask", L"GetChannelUri");
    WayAt const fails{3, {Way::Kind::Now, Results::failed}};
    WayAt const closes{4, {Way::Kind::HelperCloses}};
    WayAt const later{5, {Way::Kind::Now, Results::failed}};
    EXPECT_TRUE(IsExact(request, {}));
    EXPECT_TRUE(IsExact(request, {closes}));
    EXPECT_FALSE(IsExact(request, {{0, {Way::Kind::HelperCloses}}}));
    EXPECT_TRUE(IsExact(request, {fails, later}));
    EXPECT_TRUE(IsExact(request, {fails, closes}));
    EXPECT_FALSE(IsExact(request, {closes, later}));
    EXPECT_TRUE(IsExact(two, {fails}));
    EXPECT_FALSE(IsExact(two, {closes}));
}

} // namespace
