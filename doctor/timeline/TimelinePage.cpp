#include "doctor/timeline/TimelinePage.h"

#include "doctor/base/Json.h"
#include "doctor/timeline/CheckIndexes.h"
#include "doctor/timeline/PageTemplate.h"

namespace doctor
{

namespace
{

Json NumberOf(std::optional<LogTime> const& time)
{
    return time ? Json(time->time_since_epoch().count()) : Json();
}

// The page's script knows the order of these.
Json ElementOf(TimelineLine const& line)
{
    auto const level = line.time ? LevelText(line.level) : std::string();
    auto const thread = line.time ? std::to_string(line.thread) : std::string();
    return Json::array({NumberOf(line.time), level, thread, line.category, line.message, line.file, line.number});
}

Json ElementOf(TimelineSpan const& span)
{
    return Json::array({span.lane, span.name, NumberOf(span.begin), NumberOf(span.end), TextOf(span.outcome),
                        span.detail, span.stage, span.lines});
}

// A name that is its line's message is not written twice.
Json ElementOf(TimelineMark const& mark, std::vector<TimelineLine> const& lines)
{
    auto const isLine = mark.line && lines.at(*mark.line).message == mark.name;
    return Json::array({mark.lane, NumberOf(mark.time), isLine ? Json() : Json(mark.name), TextOf(mark.outcome),
                        mark.line ? Json(*mark.line) : Json()});
}

Json ElementOf(StageVerdict const& verdict)
{
    return {{"stage", verdict.stage}, {"outcome", ResultName(verdict.result)}, {"text", verdict.text}};
}

// JSON as it may stand in a page's script element, which a "<" could end.
std::string ScriptText(Json const& value)
{
    auto const text = JsonText(value);
    std::string escaped;
    escaped.reserve(text.size());
    for (auto const each : text)
    {
        each == '<' ? escaped.append("\\u003c") : escaped.append(1, each);
    }
    return escaped;
}

template <typename Element, typename ToElement>
void WriteList(std::string_view name, std::vector<Element> const& elements, ToElement elementOf,
               WritePiece const& write)
{
    write(",\n\"" + std::string(name) + "\":[");
    std::string_view separator = "\n";
    for (auto const& element : elements)
    {
        write(std::string(separator) + ScriptText(elementOf(element)));
        separator = ",\n";
    }
    write("]");
}

void WriteData(Timeline const& timeline, WritePiece const& write)
{
    auto const elementOf = [](auto const& element) { return ElementOf(element); };
    write("{\"title\":" + ScriptText(timeline.title) + ",\n\"summary\":" + ScriptText(timeline.summary));
    write(",\n\"lanes\":" + ScriptText(laneNames) + ",\n\"files\":" + ScriptText(timeline.files));
    WriteList("verdicts", timeline.verdicts, elementOf, write);
    WriteList("lines", timeline.lines, elementOf, write);
    WriteList("spans", timeline.spans, elementOf, write);
    WriteList("marks", timeline.marks, [&](auto const& mark) { return ElementOf(mark, timeline.lines); }, write);
    write("}");
}

} // namespace

void WriteTimelinePage(Timeline const& timeline, WritePiece const& write)
{
    CheckIndexes(timeline);
    for (auto const piece : PageHead())
    {
        write(piece);
    }
    WriteData(timeline, write);
    for (auto const piece : PageTail())
    {
        write(piece);
    }
}

} // namespace doctor
