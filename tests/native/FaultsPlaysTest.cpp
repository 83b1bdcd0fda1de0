#include "explore/faults/Plays.h"

#include "tests/native/FaultsFlows.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using namespace explore;
using namespace explore::faults;

namespace
{

std::set<std::string> WaysOfCall(Flow const& flow, std::wstring_view call)
{
    std::set<std::string> names;
    auto const number = test::NumberOf(flow, call);
    for (auto const& play : SinglePlays(flow))
    {
        EXPECT_EQ(play.deviations.size(), 1U);
        if (play.deviations.front().step == number)
        {
            names.insert(play.deviations.front().what);
        }
    }
    return names;
}

std::set<std::string> const ofEachRequest = {"now-80004005",  "now-8007000E", "now-80010108",   "now-80000013",
                                             "helper-closes", "helper-dies",  "task-cancelled", "killed"};

std::set<std::string> With(std::set<std::string> names, std::set<std::string> const& more)
{
    names.insert(more.begin(), more.end());
    return names;
}

std::set<PlayId> PairsOf(Flow const& flow, std::optional<std::uint64_t> seed = {})
{
    PairPlays pairs({&flow});
    if (seed)
    {
        pairs.Shuffle(*seed);
    }
    std::set<PlayId> ids;
    for (std::size_t number = 0; number < pairs.Count(); ++number)
    {
        ids.insert(pairs.At(number));
    }
    EXPECT_EQ(ids.size(), pairs.Count());
    return ids;
}

} // namespace

TEST(FaultsPlaysTest, LetEachCallGoEachWayThatApplies)
{
    auto const flow = test::RequestFlow(L"UnregisterBackgroundTask");
    EXPECT_EQ(WaysOfCall(flow, L"AppServiceDeferral.Complete"), ofEachRequest);
    EXPECT_EQ(WaysOfCall(flow, L"ValueSet.Lookup"), With(ofEachRequest, {"null"}));
    EXPECT_EQ(WaysOfCall(flow, L"AppServiceConnection.SendMessageAsync"),
              With(ofEachRequest,
                   {"null", "completion-80004005", "completion-8007000E", "completion-80010108", "completion-80000013",
                    "cancelled", "never", "ended", "unheard-80004005", "status-1", "status-2"}));
}

TEST(FaultsPlaysTest, LetHappenOutsideWhatCan)
{
    auto const events = [](Flow const& flow) {
        std::set<std::string> names;
        for (auto const& way : WaysOf(flow, L"CoreApplication.Exit"))
        {
            names.insert(way.kind == Way::Kind::Now ? "" : NameOf(way));
        }
        names.erase("");
        return names;
    };
    EXPECT_EQ(events(test::LaunchFlow()), (std::set<std::string>{"killed"}));
    EXPECT_EQ(events(test::PushFlow()), (std::set<std::string>{"killed", "task-cancelled"}));
    std::set<std::string> const all = {"killed", "task-cancelled", "helper-closes", "helper-dies"};
    EXPECT_EQ(events(test::RequestFlow(L"ExitZEB")), all);
    EXPECT_EQ(events(test::CloseFlow()), all);
}

TEST(FaultsPlaysTest, LeaveOutNoCallOfAFlow)
{
    auto const flow = test::RequestFlow(L"RegisterBackgroundTask");
    std::set<std::uint32_t> steps;
    for (auto const& play : SinglePlays(flow))
    {
        steps.insert(play.deviations.front().step);
    }
    EXPECT_EQ(steps.size(), CallsOf(flow).size());
    EXPECT_EQ(*steps.rbegin() + 1, CallsOf(flow).size());
}

TEST(FaultsPlaysTest, OfHandlersReachTheMostCallsThatTheyCanMake)
{
    EXPECT_EQ(CallsOf(test::CloseFlow()).size(), 4U);
    EXPECT_EQ(CallsOf(test::CancelFlow()).size(), 2U);
    EXPECT_EQ(CallsOf(test::CancelFlow(), {{0, {Way::Kind::HelperCloses}}}).size(), 4U);
    EXPECT_EQ(CallsOf(test::CloseFlow(), {{1, {Way::Kind::Killed}}}).size(), 2U);
}

TEST(FaultsPlaysTest, PairTwoCallsOfWhichTheSecondIsMade)
{
    auto const flow = test::RequestFlow(L"unknown");
    for (auto const& play : PairsOf(flow))
    {
        ASSERT_EQ(play.deviations.size(), 2U);
        EXPECT_LT(play.deviations[0].step, play.deviations[1].step);
        EXPECT_EQ(WhyNot(flow, play), "") << TextOf(play);
        EXPECT_NE(play.deviations[0].what, "killed");
    }
}

// Each pair is one of those, but for codes that go as another one does.
TEST(FaultsPlaysTest, PairAllOfARequest)
{
    auto const flow = test::RequestFlow(L"unknown");
    auto const isAsAnother = [](std::string const& what) { return what == "now-80010108" || what == "now-80000013"; };
    std::set<PlayId> expected;
    for (auto const& one : SinglePlays(flow))
    {
        auto const first = *WaysIn(one);
        auto const calls = CallsOf(flow, first);
        for (auto call = first.front().call + 1; call < calls.size(); ++call)
        {
            for (auto const& way : WaysOf(flow, calls[call]))
            {
                auto pair = one;
                pair.deviations.push_back({static_cast<std::uint32_t>(call), NameOf(way)});
                if (!isAsAnother(pair.deviations[0].what) && !isAsAnother(pair.deviations[1].what))
                {
                    expected.insert(pair);
                }
            }
        }
    }
    EXPECT_EQ(PairsOf(flow), expected);
    EXPECT_GT(expected.size(), 100U);
}

TEST(FaultsPlaysTest, PairInAnOrderOfTheSeed)
{
    auto const flow = test::RequestFlow(L"unknown");
    auto const first = [&](std::uint64_t seed) {
        PairPlays pairs({&flow});
        pairs.Shuffle(seed);
        return std::vector{pairs.At(0), pairs.At(1), pairs.At(2)};
    };
    EXPECT_EQ(first(5), first(5));
    EXPECT_NE(first(5), first(6));
    EXPECT_EQ(PairsOf(flow, 5), PairsOf(flow));
}

TEST(FaultsPlaysTest, PairByChanceWhatCanBe)
{
    auto const flow = test::RequestFlow(L"GetChannelUri");
    Random random(1);
    std::set<PlayId> seen;
    for (auto time = 0; time < 50; ++time)
    {
        auto const play = PairByChance(flow, random);
        EXPECT_EQ(WhyNot(flow, play), "");
        seen.insert(play);
    }
    EXPECT_GT(seen.size(), 40U);
}

TEST(FaultsPlaysTest, ThatCannotBeAreRefusedWithWhatCanBe)
{
    auto const flow = test::RequestFlow(L"unknown");
    auto const why = [&](std::vector<Deviation> deviations) {
        return WhyNot(flow, {"request", std::move(deviations)});
    };
    EXPECT_EQ(why({}), "");
    EXPECT_EQ(why({{0, "null"}}), "");
    EXPECT_EQ(why({{6, "killed"}}), "there is no call 6 here; there are 0 to 5");
    EXPECT_EQ(why({{3, "null"}, {5, "killed"}}), "there is no call 5 here; the last one is 3");
    EXPECT_EQ(why({{1, "null"}}),
              "call 1, ValueSet, cannot go null; it can: now-80004005 now-8007000E now-80010108 now-80000013 killed "
              "helper-closes helper-dies task-cancelled");
    EXPECT_NE(why({{1, "now-1"}}), "");
    EXPECT_NE(why({{1, "never-heard-of"}}), "");
    EXPECT_NE(why({{1, "killed"}, {2, "killed"}}), "");
}
