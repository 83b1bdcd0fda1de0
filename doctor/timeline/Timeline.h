#pragma once
#include "doctor/log/LogLine.h"
#include "doctor/stories/Stage.h"
#include "utils/LogLevel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doctor
{

// Where something happens; drawn in this order.
enum class Lane
{
    Platform,
    App,
    Service,
    Helper,
    Desktop
};

inline constexpr std::array laneNames = {"platform", "app", "service", "helper", "desktop component"};

constexpr std::string_view LaneName(Lane lane)
{
    return laneNames.at(static_cast<std::size_t>(lane));
}

// How a span or a mark is shown.
enum class LaneOutcome
{
    Neutral,
    Worked,
    Failed, // in red
    Open    // its end should be there and is not
};

constexpr std::string_view TextOf(LaneOutcome outcome)
{
    constexpr std::array texts = {"neutral", "worked", "failed", "open"};
    return texts.at(static_cast<std::size_t>(outcome));
}

// A line of the log. Several spans and marks may refer to one.
struct TimelineLine
{
    std::optional<LogTime> time{}; // nothing: text in another format, which is the message; level to category are empty
    zant::LogLevel level{};
    std::uint32_t thread = 0;
    std::string category{};
    std::string message{};
    std::size_t file = 0;     // an index of Timeline::files
    std::uint64_t number = 0; // in that file, from 1
};

// A process, a connection, a request, a task.
struct TimelineSpan
{
    Lane lane{};
    std::string name{};
    LogTime begin{};
    std::optional<LogTime> end{}; // before `begin` where the clock was set back meanwhile: drawn as if it ended at once
    LaneOutcome outcome = LaneOutcome::Neutral;
    std::string detail{};             // what else a reader wants to know; may be empty
    std::string stage{};              // the stage of the verdict to which it belongs; may be empty
    std::vector<std::size_t> lines{}; // indexes of Timeline::lines, ascending
};

// A line, or an event of the platform, which has none.
struct TimelineMark
{
    Lane lane{};
    LogTime time{};
    std::string name{};
    LaneOutcome outcome = LaneOutcome::Neutral;
    std::optional<std::size_t> line{}; // an index of Timeline::lines
};

struct StageVerdict
{
    std::string stage{};
    Result result = Result::NotSeen;
    std::string text{};
};

// What a log tells, for the page and for trace events. It owns all of its texts, which are UTF-8 (other bytes come out
// as U+FFFD) and come out whole: the one that fills it shortens channel URIs. Spans and marks are in any order. An
// index beyond the lines or the files makes a writer throw std::out_of_range before it writes anything.
struct Timeline
{
    std::string title{};                  // of the page: "KZEB.log", "story.scenario"
    std::string summary{};                // the first stage that failed, how often, when; then what failed
    std::vector<StageVerdict> verdicts{}; // in the order of the stages
    std::vector<std::string> files{};     // as people read their paths
    std::vector<TimelineLine> lines{};    // in the log's order, which is not that of their times where a clock jumps
    std::vector<TimelineSpan> spans{};
    std::vector<TimelineMark> marks{};
};

// Takes the next piece of what is written, in UTF-8.
using WritePiece = std::function<void(std::string_view)>;

} // namespace doctor
