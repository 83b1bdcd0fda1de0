#include "doctor/timeline/LogTimeline.h"

#include "doctor/timeline/TimelineBuilder.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"

#include <algorithm>
#include <gtest/gtest.h>

using doctor::Lane;
using doctor::LaneOutcome;
using doctor::Timeline;
using doctor::TimelineSpan;

namespace
{

class LogTimeline : public testing::Test
{
  protected:
    struct Written
    {
        std::wstring time; // of a minute
        std::wstring message;
        std::wstring category = L"AppService";
        unsigned thread = 1;
    };

    void Write(std::wstring const& name, std::initializer_list<Written> lines) const
    {
        auto text = test::mark;
        for (auto const& [time, message, category, thread] : lines)
        {
            text += test::LogText(L"01/05/24 09:30:" + time, message, L"INFO", category, thread) + L"\r\n";
        }
        test::WriteBytes(m_folder / name, test::Utf16(text));
    }

    Timeline Made(bool hasFullUris = false)
    {
        m_made = doctor::TimelineOfLogs({m_folder / L"KZEB.log"}, std::nullopt, "a title", hasFullUris);
        return m_made.timeline;
    }

    static TimelineSpan const& SpanOf(Timeline const& timeline, std::string_view name)
    {
        auto const found = std::ranges::find(timeline.spans, name, &TimelineSpan::name);
        return found == timeline.spans.end() ? throw std::runtime_error("no span " + std::string(name)) : *found;
    }

    static std::vector<std::string> SpanNames(Timeline const& timeline)
    {
        std::vector<std::string> names;
        std::ranges::transform(timeline.spans, std::back_inserter(names), &TimelineSpan::name);
        std::ranges::sort(names);
        return names;
    }

    static doctor::LogTime At(int milliseconds)
    {
        using namespace std::chrono;
        return local_days(year(2024) / 1 / 5) + 9h + 30min + std::chrono::milliseconds(milliseconds);
    }

    test::TemporaryFolder m_folder;
    doctor::ReportAndTimeline m_made;
};

constexpr auto banner =
    L"****************************** VelmoNotificationCLient Started. *********************************";

} // namespace

TEST_F(LogTimeline, HasASpanForWhatEndsAndAMarkForEachLine)
{
    Write(L"KZEB.log", {{L"01:000", banner, L"ZEBMain"},
                        {L"01:010", L"Inside OnLaunched", L"ZEBMain"},
                        {L"01:020", L"Going to launch full trust app to launch HOV", L"ZEBMain"},
                        {L"01:200", L"Launch Done !! ", L"ZEBMain", 2},
                        {L"04:030", L"Going to exit", L"ZEBMain"}});
    auto const timeline = Made();
    EXPECT_EQ(timeline.title, "a title");
    EXPECT_EQ(timeline.summary, "Nothing failed.");
    EXPECT_EQ(timeline.summary, m_made.report.summary);
    ASSERT_EQ(timeline.files.size(), 1u);
    EXPECT_TRUE(timeline.files[0].ends_with("KZEB.log"));
    EXPECT_EQ(SpanNames(timeline), (std::vector<std::string>{"launch for the user", "process", "user launch"}));
    auto const& launch = SpanOf(timeline, "launch for the user");
    EXPECT_EQ(launch.lane, Lane::Desktop);
    EXPECT_EQ(launch.begin, At(1'020));
    EXPECT_EQ(launch.end, At(1'200));
    EXPECT_EQ(launch.outcome, LaneOutcome::Worked);
    EXPECT_EQ(launch.stage, "desktop component");
    EXPECT_EQ(launch.lines, (std::vector<std::size_t>{2, 3}));
    EXPECT_EQ(SpanOf(timeline, "process").lane, Lane::App);
    ASSERT_EQ(timeline.marks.size(), 5u);
    EXPECT_EQ(timeline.marks[3].name, "Launch Done !! ");
    EXPECT_EQ(timeline.marks[3].lane, Lane::App);
    EXPECT_EQ(timeline.marks[3].time, At(1'200));
    EXPECT_EQ(timeline.marks[3].line, 3u);
    EXPECT_EQ(timeline.marks[3].outcome, LaneOutcome::Neutral);
    ASSERT_EQ(timeline.lines.size(), 5u);
    EXPECT_EQ(timeline.lines[3].thread, 2u);
    EXPECT_EQ(timeline.lines[3].category, "ZEBMain");
    EXPECT_EQ(timeline.lines[3].number, 4u);
    ASSERT_EQ(timeline.verdicts.size(), doctor::stageCount);
    EXPECT_EQ(timeline.verdicts[9].stage, "exit");
    EXPECT_EQ(timeline.verdicts[9].result, doctor::Result::Worked);
}

TEST_F(LogTimeline, ShowsAFailureWhereItIs)
{
    Write(L"KZEB.log", {{L"01:000", banner, L"ZEBMain"},
                        {L"01:010", L"Inside OnBackgroundActivated", L"ZEBMain"},
                        {L"01:020", L"App service connection request received", L"ZEBMain"},
                        {L"01:030", L"Inside ServiceNewConnection ."},
                        {L"01:040", L"ServiceNewConnection deferral."},
                        {L"02:000", L"Inside OnRequestReceived to process appservice request from Win32 App"},
                        {L"02:010", L"RequestReceived for channel URI"},
                        {L"03:000", L"Inside GetChannelUriStr, Exception raised in tast_creation for channelURI",
                         L"AppService", 2}});
    auto const timeline = Made();
    auto const& channel = SpanOf(timeline, "channel for the helper");
    EXPECT_EQ(channel.lane, Lane::Service);
    EXPECT_EQ(channel.outcome, LaneOutcome::Failed);
    EXPECT_TRUE(channel.detail.starts_with("The platform refused the push channel. ")) << channel.detail;
    EXPECT_EQ(SpanOf(timeline, "connection").lane, Lane::Helper);
    EXPECT_EQ(SpanOf(timeline, "connection").outcome, LaneOutcome::Neutral);
    ASSERT_EQ(timeline.marks.size(), 8u);
    EXPECT_EQ(timeline.marks[7].outcome, LaneOutcome::Failed);
    EXPECT_EQ(timeline.marks[7].lane, Lane::Service);
    EXPECT_EQ(timeline.marks[6].outcome, LaneOutcome::Neutral);
    EXPECT_EQ(timeline.verdicts[3].result, doctor::Result::Failed);
    EXPECT_EQ(timeline.verdicts[3].text, "The platform refused the push channel.");
}

TEST_F(LogTimeline, EndsWhatIsOverdueAtItsTime)
{
    Write(L"KZEB.log", {{L"01:000", banner, L"ZEBMain"},
                        {L"01:010", L"Inside OnBackgroundActivated", L"ZEBMain"},
                        {L"01:020", L"Deferal to complete background task", L"ZEBMain"},
                        {L"01:030", L"Notification bkg thread invocation", L"ZEBMain"},
                        {L"01:040", L"Going to launch full trust app for new notification invocation ", L"ZEBMain"}});
    auto const timeline = Made();
    EXPECT_EQ(SpanOf(timeline, "launch for a push").outcome, LaneOutcome::Failed);
    EXPECT_EQ(SpanOf(timeline, "launch for a push").end, At(31'040));
    EXPECT_EQ(timeline.marks[4].outcome, LaneOutcome::Failed);
}

TEST_F(LogTimeline, ShortensChannelUris)
{
    auto const uri = L"Received Channel URI is https://db5.notify.windows.com/?token=ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    Write(L"KZEB.log", {{L"01:000", uri}});
    EXPECT_EQ(Made().lines[0].message.find("XYZ"), std::string::npos);
    EXPECT_EQ(Made().marks[0].name.find("XYZ"), std::string::npos);
    EXPECT_NE(Made(true).lines[0].message.find("XYZ"), std::string::npos);
}

TEST_F(LogTimeline, HasOtherTextWithoutAMarkAndCutShort)
{
    test::WriteBytes(m_folder / L"KZEB.log", "other " + std::string(1'000, 'x') + "\n");
    auto const timeline = Made();
    ASSERT_EQ(timeline.lines.size(), 1u);
    EXPECT_EQ(timeline.lines[0].message, "other " + std::string(194, 'x'));
    EXPECT_FALSE(timeline.lines[0].time.has_value());
    EXPECT_EQ(timeline.marks.size(), 0u);
}

TEST_F(LogTimeline, KeepsTheNewestLines)
{
    constexpr auto most = doctor::TimelineBuilder::mostLines;
    auto text = test::mark;
    auto const activation = test::LogText(L"01/05/24 09:30:01:000", L"Inside OnLaunched") + L"\r\n" +
                            test::LogText(L"01/05/24 09:30:01:000", L"Going to exit") + L"\r\n";
    for (std::size_t i = 0; i < 3 * most / 2; ++i)
    {
        text += activation;
    }
    test::WriteBytes(m_folder / L"KZEB.log", test::Utf16(text));
    auto const timeline = Made();
    ASSERT_EQ(timeline.lines.size(), most);
    EXPECT_EQ(timeline.lines.back().number, 3 * most);
    EXPECT_TRUE(timeline.summary.ends_with(" The newest 7000 of 21000 lines are drawn.")) << timeline.summary;
    EXPECT_EQ(timeline.marks.size(), most);
    EXPECT_EQ(timeline.spans.size(), most / 2);
    EXPECT_EQ(timeline.spans.front().lines, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(m_made.report.files[0].lines, 3 * most);
}

TEST_F(LogTimeline, JoinsTheFiles)
{
    Write(L"KZEB.log", {{L"05:000", L"Inside OnLaunched", L"ZEBMain"}, {L"08:000", L"Going to exit", L"ZEBMain"}});
    Write(L"KZEB 2024-1-5 09-30-04.log", {{L"01:000", banner, L"ZEBMain"}});
    auto const made = doctor::TimelineOfLogs({m_folder / L""}, std::nullopt, "", false).timeline;
    ASSERT_EQ(made.lines.size(), 3u);
    EXPECT_EQ(made.lines[0].file, 0u);
    EXPECT_EQ(made.lines[1].file, 1u);
    EXPECT_EQ(made.lines[1].number, 1u);
    EXPECT_EQ(SpanOf(made, "process").lines, (std::vector<std::size_t>{0, 2}));
}
