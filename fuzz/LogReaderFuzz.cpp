// Random bytes as a log file: the lines do not depend on the blocks in which the bytes come, and are text; the report
// on them agrees with itself.
#include "doctor/log/ChannelUri.h"
#include "doctor/log/LineReader.h"
#include "doctor/log/LogLine.h"
#include "doctor/log/Utf8.h"
#include "doctor/verdict/ReportBuilder.h"
#include "fuzz/Demand.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

using fuzz::Demand;

namespace
{

using Line = std::tuple<std::string, std::uint64_t, bool, bool>;

std::vector<Line> LinesOf(std::string_view bytes, std::size_t blockSize)
{
    std::vector<Line> lines;
    auto const take = [&](doctor::RawLine const& line) {
        lines.emplace_back(line.text, line.number, line.isDamaged, line.isComplete);
    };
    doctor::LineReader reader;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(blockSize, bytes.size())))
    {
        reader.Add(bytes.substr(0, blockSize), take);
    }
    reader.End(take);
    return lines;
}

void DemandSound(std::vector<doctor::Finding> const& findings, std::uint64_t toldTimes)
{
    constexpr std::size_t most = 100; // sentences that differ
    Demand(findings.size() < most);
    std::uint64_t times = 0;
    for (auto const& finding : findings)
    {
        Demand(finding.first && finding.last && !finding.what.empty() && finding.count > 0);
        Demand(finding.count > 1 || finding.latest == finding.first->time);
        times += finding.count;
    }
    Demand(times <= toldTimes);
}

// isFinished: nothing follows the last line; else more may.
void DemandSoundReport(std::vector<Line> const& lines, bool isFinished)
{
    std::uint64_t told = 0;
    doctor::ReportBuilder builder([&](doctor::Told const&) { ++told; }, [&](auto&&...) { ++told; });
    builder.Begin("KZEB.log");
    std::uint64_t own = 0;
    auto last = doctor::LogTime();
    for (auto const& [text, number, isDamaged, isComplete] : lines)
    {
        auto const line = doctor::ParseLogLine(text);
        own += builder.Add({{text, number, isDamaged, isComplete}, line}) ? 1 : 0;
        last = line ? line->time : last;
    }
    auto const report = builder.End(isFinished ? std::nullopt : std::optional(last));
    Demand(report.files.size() == 1 && report.files[0].lines == own);
    Demand(own + report.files[0].others <= lines.size());
    Demand(!report.summary.empty());
    for (auto const& stage : report.stages)
    {
        DemandSound(stage.findings, told);
        Demand((stage.worked > 0) == stage.lastWorked.has_value());
    }
    DemandSound(report.remarks, told);
    Demand(own > 0 || report.Verdict() == doctor::Result::NotSeen);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    auto const lines = LinesOf(bytes, bytes.size() + 1);
    Demand(LinesOf(bytes, 1) == lines);
    Demand(LinesOf(bytes, 7) == lines);
    DemandSoundReport(lines, true);
    DemandSoundReport(lines, false);
    for (auto const& [text, number, isDamaged, isComplete] : lines)
    {
        auto copy = text;
        Demand(!doctor::ReplaceMalformed(copy));
        auto shortened = doctor::WithShortUris(text);
        Demand(!doctor::ReplaceMalformed(shortened));
        Demand(doctor::WithShortUris(shortened).size() <= shortened.size());
        auto const glued = doctor::FindGluedLine(text);
        Demand(glued == text.npos || (glued > 0 && glued < text.size()));
        if (auto const line = doctor::ParseLogLine(text))
        {
            Demand(text.ends_with(line->message));
        }
    }
    return 0;
}
