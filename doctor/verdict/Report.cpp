#include "doctor/verdict/Report.h"

#include "doctor/log/LogTime.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>
#include <utility>

namespace doctor
{

namespace
{

bool Has(std::vector<Finding> const& findings, Result result)
{
    return std::ranges::find(findings, result, &Finding::result) != findings.end();
}

Result ResultOf(StageReport const& stage)
{
    if (Has(stage.findings, Result::Failed))
    {
        return Result::Failed;
    }
    if (stage.worked > 0)
    {
        return Result::Worked;
    }
    return Has(stage.findings, Result::CannotBeTold) ? Result::CannotBeTold : Result::NotSeen;
}

// One that lasts stands for those that do not. A step begins behind what it is part of, and says more.
Finding const* LastFailure(StageReport const& stage)
{
    auto const order = [](Finding const& finding) { return std::pair(finding.lasts, finding.latest); };
    Finding const* last = nullptr;
    for (auto const& finding : stage.findings)
    {
        if (finding.result == Result::Failed && (last == nullptr || order(finding) > order(*last)))
        {
            last = &finding;
        }
    }
    return last;
}

// It has worked since all of its failures.
bool IsMended(StageReport const& stage)
{
    return stage.lastWorked && std::ranges::all_of(stage.findings, [&](Finding const& finding) {
               auto const isBefore = finding.last && finding.last->time < stage.lastWorked->time;
               return finding.result != Result::Failed || (isBefore && !finding.lasts);
           });
}

// Failures first, each in the order of its first line.
void Sort(std::vector<Finding>& findings)
{
    std::ranges::sort(findings, {}, [](Finding const& finding) {
        auto const isIn = finding.first.has_value();
        return std::tuple(finding.result != Result::Failed, isIn ? finding.first->time : LogTime::min(),
                          isIn ? finding.first->line : 0, std::string_view(finding.what));
    });
}

std::string Times(std::uint64_t count)
{
    return count == 1 ? "once" : std::to_string(count) + " times";
}

// Which stage, how often, when; then what.
std::string SummaryOf(StageReport const& stage)
{
    auto const& finding = *LastFailure(stage);
    auto text = "The first stage that failed: " + std::string(StageName(stage.stage));
    if (finding.first)
    {
        text +=
            ", " + Times(finding.count) + ", " + (finding.count == 1 ? "at " : "last at ") + TimeText(finding.latest);
    }
    return text + (IsMended(stage) ? "; it has worked since. " : ". ") + finding.what;
}

std::string SummaryWithoutFailure(Report const& report)
{
    switch (report.Verdict())
    {
    case Result::Worked:
        return "Nothing failed.";
    case Result::CannotBeTold:
        return "Nothing failed up to the log's end, where something is under way.";
    default:
        return std::ranges::any_of(report.files, &FileReport::lines) ? "The app's lines tell of no stage."
                                                                     : "There is no line of the app.";
    }
}

} // namespace

Result VerdictOf(std::vector<Finding> const& findings)
{
    for (auto const result : {Result::Failed, Result::CannotBeTold, Result::Worked})
    {
        if (Has(findings, result))
        {
            return result;
        }
    }
    return Result::NotSeen;
}

std::vector<Finding> InOrderOfStages(std::vector<Finding> const& findings)
{
    std::vector<Finding> ordered;
    for (std::size_t stage = 0; stage < stageCount; ++stage)
    {
        std::ranges::copy_if(findings, std::back_inserter(ordered),
                             [&](Finding const& each) { return each.stage == static_cast<Stage>(stage); });
    }
    return ordered;
}

Result Report::Verdict() const
{
    for (auto const result : {Result::Failed, Result::CannotBeTold})
    {
        if (std::ranges::any_of(stages, [&](StageReport const& stage) { return Has(stage.findings, result); }))
        {
            return result;
        }
    }
    return std::ranges::any_of(stages, &StageReport::worked) ? Result::Worked : Result::NotSeen;
}

void Conclude(Report& report)
{
    for (auto& stage : report.stages)
    {
        Sort(stage.findings);
        stage.result = ResultOf(stage);
    }
    auto const hasFailed = [](StageReport const& stage) { return stage.result == Result::Failed; };
    auto const isFailing = [&](StageReport const& stage) { return hasFailed(stage) && !IsMended(stage); };
    // What fails still is more urgent than what has worked since.
    auto const* const failing = std::ranges::find_if(report.stages, isFailing);
    auto const* const failed =
        failing == report.stages.end() ? std::ranges::find_if(report.stages, hasFailed) : failing;
    report.summary = failed == report.stages.end() ? SummaryWithoutFailure(report) : SummaryOf(*failed);
}

} // namespace doctor
