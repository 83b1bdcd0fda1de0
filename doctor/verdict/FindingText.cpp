#include "doctor/verdict/FindingText.h"

#include "doctor/base/JsonObject.h"
#include "doctor/log/Utf8.h"
#include "doctor/verdict/Columns.h"

namespace doctor
{

std::string AdviceText(Finding const& finding, std::size_t margin)
{
    auto const line = [&](std::string const& name, std::string const& text) {
        return text.empty() ? "" : "\n" + std::string(margin, ' ') + name + ": " + WithoutControls(text);
    };
    return line("Usual cause", finding.cause) + line("What to do", finding.advice);
}

std::string FindingText(Finding const& finding)
{
    return Column(ResultName(finding.result), resultWidth) + Column(StageName(finding.stage), stageWidth) +
           WithoutControls(finding.what) + AdviceText(finding, resultWidth);
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
