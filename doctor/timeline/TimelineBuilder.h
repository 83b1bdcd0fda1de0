#pragma once
#include "doctor/log/ReadLog.h"
#include "doctor/stories/Remark.h"
#include "doctor/stories/Told.h"
#include "doctor/timeline/Timeline.h"
#include "doctor/verdict/Report.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace doctor
{

// Makes a timeline from the lines of logs and from what ReportBuilder finds in them.
class TimelineBuilder
{
  public:
    // The newest lines are kept, so that a page stays below 1.5 MB.
    static constexpr std::size_t mostLines = 7'000;

    explicit TimelineBuilder(bool hasFullUris) : m_hasFullUris(hasFullUris) {}

    // The next file begins.
    void Begin(std::filesystem::path const& file);

    // Its next line; `place`: of one of the app.
    void Add(Entry const& entry, std::optional<LogPlace> const& place);

    void Add(Told const& told);
    void Add(Remark const& remark, LogPlace const& first, LogPlace const& last);

    // There are no more.
    Timeline End(Report const& report, std::string title);

  private:
    using Key = std::pair<std::size_t, std::uint64_t>;

    struct Line
    {
        TimelineLine line;
        std::optional<LogPlace> place;
    };

    std::vector<std::size_t> IndexesOf(LogPlace const& begin, std::optional<LogPlace> const& end) const;
    void DropOldLines();
    void AddSpan(Told const& told);
    void AddMarks();

    bool m_hasFullUris;
    Timeline m_timeline;
    std::size_t m_lineCount = 0; // also of those that were dropped
    std::vector<Line> m_lines;
    std::map<Key, std::size_t> m_indexes;
    std::vector<Told> m_told;
    std::set<Key> m_failedAt; // lines that say so
};

} // namespace doctor
