#include "doctor/timeline/TimelineBuilder.h"

#include "doctor/base/SystemText.h"
#include "doctor/log/ChannelUri.h"

#include <algorithm>

namespace doctor
{

namespace
{

// A file's index and a line's number there. Of lines that were glued together the last one is found.
template <typename Line>
std::pair<std::size_t, std::uint64_t> KeyOf(Line const& line)
{
    return {line.file, line.number};
}

// Steps are seen in the lines; a timeline shows them where they fail.
bool IsShown(Told const& told)
{
    return told.story->kind != StoryKind::Step || ResultOf(told) == Result::Failed;
}

Lane LaneOf(Story const& story)
{
    switch (story.kind)
    {
    case StoryKind::Process:
    case StoryKind::Activation:
        return Lane::App;
    case StoryKind::Launch:
        return Lane::Desktop;
    case StoryKind::Connection:
        return Lane::Helper;
    case StoryKind::Task:
        return story.stage == Stage::Service ? Lane::Service : Lane::App;
    case StoryKind::Request:
    case StoryKind::Channel:
    case StoryKind::Registration:
    case StoryKind::Step:
        break;
    }
    return story.stage == Stage::StartUp ? Lane::App : Lane::Service;
}

LaneOutcome OutcomeOf(Told const& told)
{
    if (told.ending == Ending::Unlimited)
    {
        return LaneOutcome::Neutral;
    }
    switch (ResultOf(told))
    {
    case Result::Failed:
        return LaneOutcome::Failed;
    case Result::CannotBeTold:
        return LaneOutcome::Open;
    default:
        return LaneOutcome::Worked;
    }
}

std::optional<LogTime> EndOf(Told const& told)
{
    if (told.ending == Ending::Overdue)
    {
        return told.begin.time + told.story->limit;
    }
    return told.last ? std::optional(told.last->time) : std::nullopt;
}

std::string DetailOf(Told const& told)
{
    auto const meaning = MeaningOf(told);
    std::string detail;
    for (auto const part : {meaning.what, meaning.cause, meaning.advice})
    {
        detail += detail.empty() || part.empty() ? "" : " ";
        detail += part;
    }
    return detail;
}

std::string TextOf(StageReport const& stage)
{
    std::string text;
    for (auto const& finding : stage.findings)
    {
        text += (text.empty() ? "" : " ") + finding.what;
    }
    return text;
}

} // namespace

void TimelineBuilder::Begin(std::filesystem::path const& file)
{
    m_timeline.files.push_back(PathText(file));
}

void TimelineBuilder::Add(Entry const& entry, std::optional<LogPlace> const& place)
{
    constexpr std::size_t mostOfOtherText = 200;
    auto const whole = entry.line ? entry.line->message : entry.raw.text.substr(0, mostOfOtherText);
    TimelineLine line;
    if (entry.line)
    {
        line.time = entry.line->time;
        line.level = entry.line->level;
        line.thread = entry.line->thread;
        line.category = entry.line->category;
    }
    line.message = m_hasFullUris ? std::string(whole) : WithShortUris(whole);
    line.file = m_timeline.files.size() - 1;
    line.number = entry.raw.number;
    m_lines.push_back({std::move(line), place});
    ++m_lineCount;
    if (m_lines.size() == 2 * mostLines)
    {
        DropOldLines();
    }
}

void TimelineBuilder::DropOldLines()
{
    auto const extra = m_lines.size() - std::min(m_lines.size(), mostLines);
    m_lines.erase(m_lines.begin(), m_lines.begin() + static_cast<std::ptrdiff_t>(extra));
    if (extra == 0 || m_lines.empty())
    {
        return;
    }
    auto const first = KeyOf(m_lines.front().line);
    std::erase_if(m_told, [&](Told const& told) { return KeyOf(told.last.value_or(told.begin)) < first; });
    m_failedAt.erase(m_failedAt.begin(), m_failedAt.lower_bound(first));
}

void TimelineBuilder::Add(Told const& told)
{
    if (IsShown(told))
    {
        m_told.push_back(told);
    }
    if (ResultOf(told) == Result::Failed)
    {
        m_failedAt.insert(KeyOf(told.ending == Ending::Ended ? told.last.value_or(told.begin) : told.begin));
    }
}

void TimelineBuilder::Add(Remark const& remark, LogPlace const&, LogPlace const& last)
{
    if (remark.failed)
    {
        m_failedAt.insert(KeyOf(last));
    }
}

Timeline TimelineBuilder::End(Report const& report, std::string title)
{
    DropOldLines();
    m_timeline.title = std::move(title);
    m_timeline.summary = report.summary;
    if (m_lineCount > m_lines.size())
    {
        m_timeline.summary += " The newest " + std::to_string(m_lines.size()) + " of " + std::to_string(m_lineCount) +
                              " lines are drawn.";
    }
    for (auto const& stage : report.stages)
    {
        m_timeline.verdicts.push_back({std::string(StageName(stage.stage)), stage.result, TextOf(stage)});
    }
    for (auto& [line, place] : m_lines)
    {
        m_indexes[KeyOf(line)] = m_timeline.lines.size();
        m_timeline.lines.push_back(line);
    }
    for (auto const& told : m_told)
    {
        AddSpan(told);
    }
    AddMarks();
    return std::move(m_timeline);
}

void TimelineBuilder::AddSpan(Told const& told)
{
    m_timeline.spans.push_back({.lane = LaneOf(*told.story),
                                .name = std::string(told.story->name),
                                .begin = told.begin.time,
                                .end = EndOf(told),
                                .outcome = OutcomeOf(told),
                                .detail = DetailOf(told),
                                .stage = std::string(StageName(told.story->stage)),
                                .lines = IndexesOf(told.begin, told.last)});
}

std::vector<std::size_t> TimelineBuilder::IndexesOf(LogPlace const& begin, std::optional<LogPlace> const& end) const
{
    std::vector<std::size_t> indexes;
    for (auto const& place : {std::optional(begin), end})
    {
        auto const found = place ? m_indexes.find(KeyOf(*place)) : m_indexes.end();
        if (found != m_indexes.end() && (indexes.empty() || indexes.back() != found->second))
        {
            indexes.push_back(found->second);
        }
    }
    return indexes;
}

void TimelineBuilder::AddMarks()
{
    for (std::size_t at = 0; at < m_lines.size(); ++at)
    {
        auto const& [line, place] = m_lines[at];
        if (place)
        {
            m_timeline.marks.push_back(
                {.lane = line.category == "AppService" ? Lane::Service : Lane::App,
                 .time = place->time,
                 .name = line.message,
                 .outcome = m_failedAt.contains(KeyOf(line)) ? LaneOutcome::Failed : LaneOutcome::Neutral,
                 .line = at});
        }
    }
}

} // namespace doctor
