#include "doctor/verdict/FindingText.h"

#include "doctor/base/JsonObject.h"
#include "doctor/log/Utf8.h"
#include "doctor/verdict/Columns.h"

namespace doctor
{

std::string FindingText(Finding const& finding)
{
    auto const indent = "\n" + std::string(resultWidth, ' ');
    auto text = Column(ResultName(finding.result), resultWidth) + Column(StageName(finding.stage), stageWidth) +
                WithoutControls(finding.what);
    if (!finding.cause.empty())
    {
        text += indent + "Usual cause: " + WithoutControls(finding.cause);
    }
    if (!finding.advice.empty())
    {
        text += indent + "What to do: " + WithoutControls(finding.advice);
    }
    return text;
}

std::string FindingJson(Finding const& finding)
{
    return JsonObject({{"stage", StageName(finding.stage)},
                       {"result", ResultName(finding.result)},
                       {"what", finding.what},
                       {"cause", finding.cause},
                       {"advice", finding.advice}});
}

} // namespace doctor
