#include "simulator/scenario/PlayTimeline.h"

#include "simulator/log/AppLog.h"

#include <gtest/gtest.h>

namespace
{

using doctor::Lane;
using doctor::LaneOutcome;
using Source = sim::Timeline::Source;

sim::Moment At(sim::Moment seconds)
{
    return sim::MomentOf(2024, 1, 5, 9, 30, 0, 0).value() + seconds * 1'000;
}

// Something that happened so many seconds after 2024-01-05 09:30.
sim::Timeline::Item Happened(sim::Moment seconds, Source source, std::wstring const& kind,
                             std::vector<std::wstring> const& details = {})
{
    sim::Event const event{At(seconds), kind, details};
    return {event.time, source, event.Text(), event};
}

doctor::Timeline Drawn(std::vector<sim::Timeline::Item> const& items)
{
    doctor::Timeline timeline;
    sim::AddPlayed(timeline, items);
    return timeline;
}

// The only span, from the first second to the fifth or to no end.
void ExpectOneSpan(doctor::Timeline const& timeline, Lane lane, std::string const& name, LaneOutcome outcome)
{
    ASSERT_EQ(timeline.spans.size(), 1u);
    auto const& span = timeline.spans.front();
    EXPECT_EQ(span.lane, lane);
    EXPECT_EQ(span.name, name);
    EXPECT_EQ(span.begin, sim::LogTimeOf(At(1)));
    EXPECT_EQ(span.outcome, outcome);
    EXPECT_EQ(span.end, outcome == LaneOutcome::Open ? std::nullopt : std::optional(sim::LogTimeOf(At(5))));
}

} // namespace

TEST(PlayTimelineTest, AProcessOfTheAppLastsUntilItExits)
{
    auto const timeline = Drawn({Happened(1, Source::Event, L"app-started", {L"pid=7"}),
                                 Happened(2, Source::Event, L"activated", {L"kind=launch"}),
                                 Happened(5, Source::Event, L"app-exited", {L"pid=7", L"code=0"})});
    ExpectOneSpan(timeline, Lane::Platform, "app process", LaneOutcome::Neutral);
    EXPECT_EQ(timeline.spans.front().detail, "app-started pid=7 … app-exited pid=7 code=0");
}

TEST(PlayTimelineTest, ThePlatformEndsAProcessWithoutFailure)
{
    ExpectOneSpan(
        Drawn({Happened(1, Source::Event, L"app-started"), Happened(5, Source::Event, L"app-terminated", {L"code=1"})}),
        Lane::Platform, "app process", LaneOutcome::Neutral);
}

TEST(PlayTimelineTest, AProcessThatCrashesIsRed)
{
    auto const timeline = Drawn(
        {Happened(1, Source::Event, L"app-started"), Happened(5, Source::Event, L"app-crashed", {L"code=0xC0000409"})});
    ExpectOneSpan(timeline, Lane::Platform, "app process", LaneOutcome::Failed);
    EXPECT_EQ(timeline.marks[0].outcome, LaneOutcome::Neutral);
    EXPECT_EQ(timeline.marks[1].outcome, LaneOutcome::Failed);
}

TEST(PlayTimelineTest, ADesktopComponentIsInItsOwnLane)
{
    ExpectOneSpan(Drawn({Happened(1, Source::Desktop, L"desktop-started", {L"pid=8", L"group=LaunchHOV"}),
                         Happened(5, Source::Desktop, L"desktop-exited", {L"pid=8", L"code=0"})}),
                  Lane::Desktop, "desktop component", LaneOutcome::Neutral);
}

TEST(PlayTimelineTest, AHelperThatFailsIsRedInItsOwnLane)
{
    auto const timeline = Drawn({Happened(1, Source::Helper, L"helper-started", {L"arguments=register"}),
                                 {At(3), Source::Helper, L"a line"},
                                 Happened(5, Source::Helper, L"helper-exited", {L"code=3"})});
    ExpectOneSpan(timeline, Lane::Helper, "helper", LaneOutcome::Failed);
    ASSERT_EQ(timeline.marks.size(), 3u);
    EXPECT_EQ(timeline.marks[1].lane, Lane::Helper);
    EXPECT_EQ(timeline.marks[1].name, "a line");
    EXPECT_EQ(timeline.marks[1].outcome, LaneOutcome::Neutral);
    EXPECT_EQ(timeline.marks[2].outcome, LaneOutcome::Failed);
}

TEST(PlayTimelineTest, AHelperThatTheScenarioKillsHasNotFailed)
{
    ExpectOneSpan(Drawn({Happened(1, Source::Helper, L"helper-started"),
                         Happened(5, Source::Helper, L"helper-killed", {L"code=1"})}),
                  Lane::Helper, "helper", LaneOutcome::Neutral);
}

// An app that is told to exit leaves the task of its service behind.
TEST(PlayTimelineTest, ATaskThatIsLostHasNotFailed)
{
    ExpectOneSpan(Drawn({Happened(1, Source::Event, L"task-started", {L"instance=2"}),
                         Happened(5, Source::Event, L"task-lost", {L"instance=2"})}),
                  Lane::Platform, "task instance", LaneOutcome::Neutral);
}

TEST(PlayTimelineTest, WhatHasNoEndStaysOpen)
{
    ExpectOneSpan(Drawn({Happened(1, Source::Event, L"app-service-opened", {L"connection=1"}),
                         Happened(5, Source::Event, L"app-service-closed", {L"connection=2"})}),
                  Lane::Platform, "app service connection", LaneOutcome::Open);
}

TEST(PlayTimelineTest, EachEndsWithItsOwnEnd)
{
    auto const timeline = Drawn({Happened(1, Source::Helper, L"helper-started", {L"name=@a"}),
                                 Happened(2, Source::Helper, L"helper-started", {L"name=@b"}),
                                 Happened(3, Source::Helper, L"helper-exited", {L"code=0", L"name=@b"}),
                                 Happened(4, Source::Helper, L"helper-exited", {L"code=0", L"name=@a"}),
                                 Happened(5, Source::Helper, L"helper-started", {L"name=@b"})});
    ASSERT_EQ(timeline.spans.size(), 3u);
    EXPECT_EQ(timeline.spans[0].end, sim::LogTimeOf(At(4)));
    EXPECT_EQ(timeline.spans[1].end, sim::LogTimeOf(At(3)));
    EXPECT_EQ(timeline.spans[2].outcome, LaneOutcome::Open);
}

TEST(PlayTimelineTest, ADesktopComponentThatDoesNotStartIsARedMark)
{
    auto const timeline = Drawn({Happened(1, Source::Desktop, L"desktop-not-started", {L"result=0x80070002"})});
    EXPECT_TRUE(timeline.spans.empty());
    ASSERT_EQ(timeline.marks.size(), 1u);
    EXPECT_EQ(timeline.marks.front().lane, Lane::Desktop);
    EXPECT_EQ(timeline.marks.front().outcome, LaneOutcome::Failed);
}

TEST(PlayTimelineTest, TheLogsLinesAreLeftToTheDoctor)
{
    auto const timeline =
        Drawn({{At(1), Source::Log, L"INFO ZEBMain: Inside OnLaunched"}, {At(2), Source::Step, L"launch"}});
    ASSERT_EQ(timeline.marks.size(), 1u);
    EXPECT_EQ(timeline.marks.front().name, "launch");
    EXPECT_EQ(timeline.marks.front().lane, Lane::Platform);
}

TEST(PlayTimelineTest, ChannelUrisAreShortened)
{
    std::wstring const uri = L"https://sim.notify.windows.com/?token=ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    auto const timeline = Drawn({Happened(1, Source::Event, L"app-started", {L"uri=" + uri}),
                                 Happened(2, Source::Event, L"app-exited", {L"code=0", L"uri=" + uri})});
    for (auto const& text : {timeline.marks[0].name, timeline.marks[1].name, timeline.spans[0].detail})
    {
        EXPECT_NE(text.find("token=ABCDEF…"), std::string::npos) << text;
        EXPECT_EQ(text.find("token=ABCDEFG"), std::string::npos) << text;
    }
}
