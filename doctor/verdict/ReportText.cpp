#include "doctor/verdict/ReportText.h"

#include "doctor/base/SystemText.h"
#include "doctor/log/LogTime.h"
#include "doctor/log/Utf8.h"
#include "doctor/verdict/Columns.h"
#include "doctor/verdict/FindingText.h"

#include <algorithm>

namespace doctor
{

namespace
{

std::string_view ColourOf(Result result)
{
    switch (result)
    {
    case Result::Worked:
        return "\x1b[32m";
    case Result::Failed:
        return "\x1b[31m";
    case Result::NotSeen:
        return "\x1b[2m";
    case Result::CannotBeTold:
        return "\x1b[33m";
    }
    return "";
}

std::string EvidenceText(Evidence const& evidence)
{
    auto const file = PathText(evidence.file.filename());
    return TimeText(evidence.time) + "  " + file + ":" + std::to_string(evidence.line) + "  " + evidence.message;
}

class Writer
{
  public:
    explicit Writer(bool isColoured) : m_isColoured(isColoured) {}

    void Line(std::string_view text, std::string_view colour = "", std::string_view coloured = "")
    {
        m_text += m_isBegun ? "\n" : "";
        m_isBegun = true;
        auto const hasColour = m_isColoured && !coloured.empty();
        m_text += hasColour ? std::string(colour) + std::string(coloured) + "\x1b[0m" : std::string(coloured);
        m_text += WithoutControls(text);
    }

    void Stage(StageReport const& stage);
    void Finding(Finding const& finding, std::size_t margin);

    std::string const& Text() const { return m_text; }

  private:
    std::string m_text;
    bool m_isBegun = false;
    bool m_isColoured;
};

void Writer::Stage(StageReport const& stage)
{
    auto text = Column(StageName(stage.stage), stageWidth);
    if (stage.worked > 0)
    {
        text += "worked " + std::to_string(stage.worked) + (stage.worked == 1 ? " time" : " times");
    }
    if (stage.lastWorked)
    {
        text += ", last " + TimeText(stage.lastWorked->time) + " (" + PathText(stage.lastWorked->file.filename()) +
                ":" + std::to_string(stage.lastWorked->line) + ")";
    }
    text.erase(text.find_last_not_of(' ') + 1);
    Line(text, ColourOf(stage.result), Column(ResultName(stage.result), resultWidth));
    for (auto const& finding : stage.findings)
    {
        Finding(finding, resultWidth);
    }
}

void Writer::Finding(doctor::Finding const& finding, std::size_t margin)
{
    std::string const indent(margin, ' ');
    Line(indent + finding.what + (finding.count > 1 ? " (" + std::to_string(finding.count) + " times)" : ""));
    if (finding.first)
    {
        Line(indent + "  " + EvidenceText(*finding.first));
    }
    if (finding.first && finding.last &&
        (finding.last->line != finding.first->line || finding.last->file != finding.first->file))
    {
        Line(indent + "  " + EvidenceText(*finding.last));
    }
    m_text += AdviceText(finding, margin + 2);
}

std::string MachineText(MachineFacts const& machine)
{
    if (machine.systemName.empty())
    {
        return "Windows, locale and suite: no header in the log; the first rotation writes one";
    }
    auto const suite = machine.suiteVersion.empty() ? "no version of the suite" : "suite " + machine.suiteVersion;
    return machine.systemName + " " + machine.systemVersion + " (build " + machine.systemBuild + "), locale " +
           machine.locale + ", " + suite;
}

std::string FileText(FileReport const& file)
{
    auto text = PathText(file.path) + ": " + std::to_string(file.lines) + " lines";
    if (file.first && file.last)
    {
        text += ", " + TimeText(*file.first) + " to " + TimeText(*file.last);
    }
    if (file.others > 0)
    {
        text += "; " + std::to_string(file.others) + " not of the app";
    }
    if (file.damaged > 0)
    {
        text += "; " + std::to_string(file.damaged) + " damaged";
    }
    if (file.lines > 0)
    {
        return text;
    }
    return text + (file.others == 0 ? "; the file is empty" : "; this is no log of the app");
}

} // namespace

std::string ReportText(Report const& report, bool isColoured)
{
    Writer writer(isColoured);
    writer.Line(report.summary);
    writer.Line("");
    for (auto const& stage : report.stages)
    {
        writer.Stage(stage);
    }
    if (!report.remarks.empty())
    {
        writer.Line("");
        writer.Line("Remarks");
    }
    for (auto const& remark : report.remarks)
    {
        writer.Finding(remark, 2);
    }
    if (!report.files.empty())
    {
        writer.Line("");
        writer.Line(MachineText(report.machine));
    }
    for (auto const& file : report.files)
    {
        writer.Line(FileText(file));
    }
    return writer.Text();
}

} // namespace doctor
