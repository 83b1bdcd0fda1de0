#include "doctor/verdict/ReportJson.h"

#include "doctor/base/Json.h"
#include "doctor/base/SystemText.h"
#include "doctor/log/LogTime.h"

namespace doctor
{

namespace
{

Json JsonOf(Evidence const& evidence)
{
    return {{"time", TimeText(evidence.time)},
            {"file", PathText(evidence.file)},
            {"line", evidence.line},
            {"message", evidence.message}};
}

Json JsonOf(std::vector<Finding> const& findings)
{
    auto array = Json::array();
    for (auto const& finding : findings)
    {
        Json object = {{"what", finding.what},
                       {"result", ResultName(finding.result)},
                       {"count", finding.count},
                       {"cause", finding.cause},
                       {"advice", finding.advice}};
        if (finding.first)
        {
            object["first"] = JsonOf(*finding.first);
        }
        if (finding.last)
        {
            object["last"] = JsonOf(*finding.last);
        }
        array.push_back(std::move(object));
    }
    return array;
}

Json JsonOf(StageReport const& stage)
{
    Json object = {{"stage", StageName(stage.stage)}, {"result", ResultName(stage.result)}, {"worked", stage.worked}};
    if (stage.lastWorked)
    {
        object["lastWorked"] = JsonOf(*stage.lastWorked);
    }
    object["findings"] = JsonOf(stage.findings);
    return object;
}

Json JsonOf(FileReport const& file)
{
    Json object = {
        {"path", PathText(file.path)}, {"lines", file.lines}, {"others", file.others}, {"damaged", file.damaged}};
    if (file.first && file.last)
    {
        object["first"] = TimeText(*file.first);
        object["last"] = TimeText(*file.last);
    }
    return object;
}

Json JsonOf(MachineFacts const& machine)
{
    return {{"systemName", machine.systemName},
            {"systemVersion", machine.systemVersion},
            {"systemBuild", machine.systemBuild},
            {"locale", machine.locale},
            {"suiteVersion", machine.suiteVersion}};
}

} // namespace

std::string ReportJson(Report const& report)
{
    Json object = {{"summary", report.summary}, {"verdict", ResultName(report.Verdict())}};
    auto& stages = object["stages"] = Json::array();
    for (auto const& stage : report.stages)
    {
        stages.push_back(JsonOf(stage));
    }
    object["remarks"] = JsonOf(report.remarks);
    object["machine"] = JsonOf(report.machine);
    auto& files = object["files"] = Json::array();
    for (auto const& file : report.files)
    {
        files.push_back(JsonOf(file));
    }
    return JsonText(object);
}

} // namespace doctor
