#include "doctor/live/FindingText.h"

#include <nlohmann/json.hpp>

namespace doctor
{

namespace
{

// Columns for the longest names of a result and a stage.
constexpr std::size_t resultWidth = 16;
constexpr std::size_t stageWidth = 19;

std::string Column(std::string_view text, std::size_t width)
{
    std::string column(text);
    column.resize(std::max(width, text.size() + 1), ' ');
    return column;
}

} // namespace

std::string FindingText(Finding const& finding)
{
    auto const indent = "\n" + std::string(resultWidth, ' ');
    auto text =
        Column(ResultName(finding.result), resultWidth) + Column(StageName(finding.stage), stageWidth) + finding.what;
    if (!finding.cause.empty())
    {
        text += indent + "Usual cause: " + finding.cause;
    }
    if (!finding.advice.empty())
    {
        text += indent + "What to do: " + finding.advice;
    }
    return text;
}

std::string FindingJson(Finding const& finding)
{
    nlohmann::ordered_json const object = {{"stage", StageName(finding.stage)},
                                           {"result", ResultName(finding.result)},
                                           {"what", finding.what},
                                           {"cause", finding.cause},
                                           {"advice", finding.advice}};
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace doctor
