#include "doctor/timeline/TraceEvents.h"

#include "doctor/base/Json.h"
#include "doctor/timeline/CheckIndexes.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr int marksThread = 0; // spans stand on those from 1

struct Range
{
    LogTime earliest = LogTime::max();
    LogTime latest = LogTime::min();

    void Take(LogTime time)
    {
        earliest = std::min(earliest, time);
        latest = std::max(latest, time);
    }
};

Range RangeOf(Timeline const& timeline)
{
    Range range;
    for (auto const& span : timeline.spans)
    {
        range.Take(span.begin);
        range.Take(span.end.value_or(span.begin));
    }
    for (auto const& mark : timeline.marks)
    {
        range.Take(mark.time);
    }
    return range;
}

// Viewers lay events of one thread into one another; what merely overlaps needs threads of its own. One without an end
// lasts as long as the trace.
class Threads
{
  public:
    int ThreadOf(TimelineSpan const& span, LogTime end)
    {
        auto& ends = m_ends.at(static_cast<std::size_t>(span.lane));
        auto free = std::ranges::find_if(ends, [&](LogTime last) { return last <= span.begin; });
        if (free == ends.end())
        {
            free = ends.insert(ends.end(), end);
        }
        *free = end;
        return static_cast<int>(free - ends.begin()) + marksThread + 1;
    }

    // How many that lane has.
    int CountOf(std::size_t lane) const { return static_cast<int>(m_ends.at(lane).size()); }

  private:
    std::array<std::vector<LogTime>, laneNames.size()> m_ends;
};

// Writes the elements of the list of events.
class Events
{
  public:
    Events(Timeline const& timeline, WritePiece const& write)
        : m_timeline(timeline), m_write(write), m_range(RangeOf(timeline))
    {
    }

    void WriteAll()
    {
        std::vector<TimelineSpan const*> spans;
        spans.reserve(m_timeline.spans.size());
        for (auto const& span : m_timeline.spans)
        {
            spans.push_back(&span);
        }
        std::ranges::sort(spans, {}, [](auto const* span) { return std::pair(span->begin, span); });
        for (auto const* span : spans)
        {
            WriteSpan(*span);
        }
        for (auto const& mark : m_timeline.marks)
        {
            WriteMark(mark);
        }
        WriteNames();
    }

  private:
    void WriteSpan(TimelineSpan const& span)
    {
        auto const end = std::max(span.begin, span.end.value_or(m_range.latest));
        auto event = EventOf("X", span.name, span.lane, m_threads.ThreadOf(span, end));
        event["cat"] = span.stage.empty() ? "span" : span.stage;
        event["ts"] = Microseconds(span.begin);
        event["dur"] = MicrosecondsIn(end - span.begin);
        if (span.outcome == LaneOutcome::Failed)
        {
            event["cname"] = "terrible"; // red, in viewers that know it
        }
        auto& arguments = event["args"] = Json{{"outcome", TextOf(span.outcome)}};
        if (!span.end)
        {
            arguments["end"] = "not seen";
        }
        if (!span.detail.empty())
        {
            arguments["detail"] = span.detail;
        }
        if (!span.lines.empty())
        {
            AddLine(arguments, span.lines.front());
        }
        Write(event);
    }

    void WriteMark(TimelineMark const& mark)
    {
        auto event = EventOf("i", mark.name, mark.lane, marksThread);
        event["cat"] = mark.line ? "line" : "event";
        event["ts"] = Microseconds(mark.time);
        event["s"] = "t"; // of its thread
        auto& arguments = event["args"] = Json{{"outcome", TextOf(mark.outcome)}};
        if (mark.line)
        {
            AddLine(arguments, *mark.line);
        }
        Write(event);
    }

    // Viewers show names in the place of numbers, and lanes in this order.
    void WriteNames()
    {
        for (std::size_t lane = 0; lane < laneNames.size(); ++lane)
        {
            WriteMetadata("process_name", lane, marksThread, {{"name", laneNames.at(lane)}});
            WriteMetadata("process_sort_index", lane, marksThread, {{"sort_index", lane}});
            WriteMetadata("thread_name", lane, marksThread, {{"name", "marks"}});
            for (int thread = 1; thread <= m_threads.CountOf(lane); ++thread)
            {
                WriteMetadata("thread_name", lane, marksThread + thread, {{"name", "spans"}});
            }
        }
    }

    void WriteMetadata(std::string_view name, std::size_t lane, int thread, Json const& arguments)
    {
        auto event = EventOf("M", name, static_cast<Lane>(lane), thread);
        event["args"] = arguments;
        Write(event);
    }

    // Viewers take process 0 for the system's idle one.
    static Json EventOf(std::string_view phase, std::string_view name, Lane lane, int thread)
    {
        return {{"ph", phase}, {"name", name}, {"pid", static_cast<int>(lane) + 1}, {"tid", thread}};
    }

    void AddLine(Json& arguments, std::size_t index) const
    {
        auto const& line = m_timeline.lines.at(index);
        arguments["message"] = line.message;
        arguments["file"] = m_timeline.files.at(line.file);
        arguments["line"] = line.number;
        if (line.time)
        {
            arguments["level"] = LevelText(line.level);
            arguments["thread"] = line.thread;
        }
    }

    std::int64_t Microseconds(LogTime time) const { return MicrosecondsIn(time - m_range.earliest); }

    static std::int64_t MicrosecondsIn(LogTime::duration duration)
    {
        return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
    }

    void Write(Json const& event)
    {
        m_write(m_separator);
        m_write(JsonText(event));
        m_separator = ",\n";
    }

    Timeline const& m_timeline;
    WritePiece const& m_write;
    Range m_range;
    Threads m_threads;
    std::string_view m_separator = "\n";
};

} // namespace

void WriteTraceEvents(Timeline const& timeline, WritePiece const& write)
{
    CheckIndexes(timeline);
    write("{\"traceEvents\":[");
    Events(timeline, write).WriteAll();
    write("\n],\"displayTimeUnit\":\"ms\"}\n");
}

} // namespace doctor
