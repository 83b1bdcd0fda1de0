#include "doctor/verdict/ReportBuilder.h"

#include <algorithm>

namespace doctor
{

namespace
{

// A general sentence names the story.
std::string WhatOf(Told const& told)
{
    std::string what(MeaningOf(told).what);
    auto const isGeneral = told.ending != Ending::Ended && told.ending != Ending::Overdue;
    if (isGeneral && told.story->kind != StoryKind::Process)
    {
        what += " Under way: " + std::string(told.story->name) + ".";
    }
    return what;
}

} // namespace

ReportBuilder::ReportBuilder(TakeTold alsoTold, TakeRemark alsoRemark)
    : m_alsoTold(std::move(alsoTold)), m_alsoRemark(std::move(alsoRemark)),
      m_takeRemark(
          [this](Remark const& remark, LogPlace const& first, LogPlace const& last) { Take(remark, first, last); }),
      m_tracker([this](Told const& told) { Take(told); })
{
    for (std::size_t at = 0; at < stageCount; ++at)
    {
        m_report.stages[at].stage = static_cast<Stage>(at);
    }
}

void ReportBuilder::Begin(std::filesystem::path const& file)
{
    m_report.files.push_back({.path = file});
    m_copies.Begin(file);
}

std::optional<LogPlace> ReportBuilder::Add(Entry const& entry)
{
    constexpr std::string_view product = "ZEB";
    auto const isOwn = entry.line && entry.line->product == product;
    CountFile(entry, isOwn);
    if (!isOwn)
    {
        return std::nullopt;
    }
    auto const& line = *entry.line;
    LogPlace const place = {line.time, m_report.files.size() - 1, entry.raw.number, LineOf(line.message)};
    ReadHeader(place, line.message);
    Watch(place, line.message);
    m_tracker.Add(place, line.thread);
    return place;
}

void ReportBuilder::CountFile(Entry const& entry, bool isOwn)
{
    auto& file = m_report.files.back();
    file.damaged += entry.raw.isDamaged ? 1 : 0;
    if (!isOwn || !entry.line)
    {
        file.others += entry.raw.text.empty() ? 0 : 1;
        return;
    }
    ++file.lines;
    file.first = file.first.value_or(entry.line->time);
    file.last = entry.line->time;
}

void ReportBuilder::ReadHeader(LogPlace const& place, std::string_view message)
{
    auto& machine = m_report.machine;
    std::pair<Line, std::string*> const values[] = {{Line::SystemName, &machine.systemName},
                                                    {Line::SystemVersion, &machine.systemVersion},
                                                    {Line::SystemBuild, &machine.systemBuild},
                                                    {Line::SystemLocale, &machine.locale},
                                                    {Line::SuiteVersion, &machine.suiteVersion}};
    for (auto const& [line, value] : values)
    {
        if (place.line == line)
        {
            *value = message.substr(MessageOf(line).size());
        }
    }
}

void ReportBuilder::Watch(LogPlace const& place, std::string_view message)
{
    m_clock.Add(place, m_takeRemark);
    m_copies.Add(place, m_takeRemark);
    m_registrations.Add(place, m_takeRemark);
    m_timer.Add(place, m_takeRemark);
    m_pushes.Add(place, message);
    m_closings.Add(place, m_takeRemark);
    m_connections.Add(place, m_takeRemark);
    if (place.line == Line::Withheld)
    {
        Take(withheld, place, place);
    }
    if (place.line == Line::Started)
    {
        CountWorked(Stage::Package, place);
    }
}

Report ReportBuilder::End(std::optional<LogTime> asOf)
{
    m_tracker.End(asOf);
    m_registrations.End(m_takeRemark);
    m_timer.End(asOf, m_takeRemark);
    m_pushes.End(m_takeRemark);
    for (auto& stage : m_report.stages)
    {
        auto const& place = m_lastWorked[static_cast<std::size_t>(stage.stage)];
        stage.lastWorked = place ? std::optional(EvidenceAt(*place)) : std::nullopt;
    }
    Conclude(m_report);
    return m_report;
}

void ReportBuilder::CountWorked(Stage stage, LogPlace const& place)
{
    ++m_report.stages[static_cast<std::size_t>(stage)].worked;
    m_lastWorked[static_cast<std::size_t>(stage)] = place;
}

void ReportBuilder::Take(Told const& told)
{
    auto& stage = m_report.stages[static_cast<std::size_t>(told.story->stage)];
    auto const result = ResultOf(told);
    if (result == Result::Worked)
    {
        CountWorked(told.story->stage, told.last.value_or(told.begin));
    }
    else if (result != Result::NotSeen)
    {
        auto const meaning = MeaningOf(told);
        auto const what = WhatOf(told);
        auto const first = EvidenceAt(told.begin);
        Note(stage.findings, {told.story->stage, result, what, std::string(meaning.cause), std::string(meaning.advice),
                              1, first, told.last ? EvidenceAt(*told.last) : first, told.begin.time});
    }
    if (m_alsoTold)
    {
        m_alsoTold(told);
    }
}

void ReportBuilder::Take(Remark const& remark, LogPlace const& first, LogPlace const& last)
{
    auto const stage = remark.failed.value_or(Stage::Package);
    auto& findings = remark.failed ? m_report.stages[static_cast<std::size_t>(stage)].findings : m_report.remarks;
    Note(findings, {stage, remark.failed ? Result::Failed : Result::NotSeen, std::string(remark.meaning.what),
                    std::string(remark.meaning.cause), std::string(remark.meaning.advice), 1, EvidenceAt(first),
                    EvidenceAt(last), first.time, remark.lasts});
    if (m_alsoRemark)
    {
        m_alsoRemark(remark, first, last);
    }
}

// Findings that say the same are one, which counts them.
void ReportBuilder::Note(std::vector<Finding>& findings, Finding finding)
{
    auto const same = std::ranges::find(findings, finding.what, &Finding::what);
    if (same == findings.end())
    {
        findings.push_back(std::move(finding));
        return;
    }
    ++same->count;
    same->last = std::move(finding.last);
    same->latest = finding.latest;
}

Evidence ReportBuilder::EvidenceAt(LogPlace const& place) const
{
    return {place.time, m_report.files.at(place.file).path, place.number, std::string(MessageOf(place.line))};
}

} // namespace doctor
