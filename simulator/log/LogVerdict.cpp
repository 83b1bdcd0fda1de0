#include "simulator/log/LogVerdict.h"

#include "doctor/base/Error.h"
#include "doctor/verdict/LogReport.h"
#include "doctor/verdict/ReportBuilder.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/log/AppLog.h"

#include <algorithm>

namespace sim
{

namespace
{

// "URI stored" is uri-stored.
std::wstring WordOf(std::string_view name)
{
    auto word = FromUtf8(name);
    std::ranges::transform(word, word.begin(), [](wchar_t each) { return each == L' ' ? L'-' : towlower(each); });
    return word;
}

} // namespace

doctor::Report LogReport(Device const& device, std::optional<doctor::LogTime> asOf)
try
{
    std::filesystem::path const log = AppLogOn(device);
    return FileExists(log) ? doctor::ReportOfLogs({log.parent_path()}, asOf) : doctor::ReportBuilder().End(asOf);
}
catch (doctor::Error const& error)
{
    throw Error(FromUtf8(error.what()));
}

std::wstring VerdictText(doctor::Report const& report)
{
    auto text = WordOf(ResultName(report.Verdict()));
    for (auto const& stage : report.stages)
    {
        text += stage.result == doctor::Result::Failed ? L" " + WordOf(StageName(stage.stage)) : L"";
    }
    return text;
}

} // namespace sim
