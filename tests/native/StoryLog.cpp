#include "tests/native/StoryLog.h"

namespace test
{

namespace
{

std::string TextOf(doctor::Finding const& finding)
{
    auto text = finding.what + (finding.count > 1 ? " (" + std::to_string(finding.count) + ")" : "") + " ";
    text += std::to_string(finding.first->line);
    return finding.last->line == finding.first->line ? text : text + ".." + std::to_string(finding.last->line);
}

} // namespace

std::vector<std::string> TextsOf(doctor::Report const& report)
{
    std::vector<std::string> texts;
    for (auto const& stage : report.stages)
    {
        auto const name = std::string(StageName(stage.stage)) + ": ";
        if (stage.worked > 0)
        {
            texts.push_back(name + "worked " + std::to_string(stage.worked));
        }
        for (auto const& finding : stage.findings)
        {
            texts.push_back(name + std::string(ResultName(finding.result)) + ": " + TextOf(finding));
        }
    }
    for (auto const& remark : report.remarks)
    {
        texts.push_back("remark: " + TextOf(remark));
    }
    return texts;
}

Texts RemarksOf(doctor::Report const& report)
{
    auto texts = TextsOf(report);
    std::erase_if(texts, [](auto const& text) { return !text.starts_with("remark: "); });
    return texts;
}

Texts FailuresOf(doctor::Report const& report)
{
    auto texts = TextsOf(report);
    std::erase_if(texts, [](auto const& text) { return text.find(": failed: ") == text.npos; });
    return texts;
}

} // namespace test
