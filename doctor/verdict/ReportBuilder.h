#pragma once
#include "doctor/log/ReadLog.h"
#include "doctor/stories/StoryTracker.h"
#include "doctor/verdict/Report.h"
#include "doctor/watches/ClockWatch.h"
#include "doctor/watches/ClosingWatch.h"
#include "doctor/watches/ConnectionWatch.h"
#include "doctor/watches/CopyWatch.h"
#include "doctor/watches/PushWatch.h"
#include "doctor/watches/RegistrationWatch.h"
#include "doctor/watches/TimerWatch.h"

#include <map>
#include <utility>

namespace doctor
{

// Makes the report of logs from their lines, from the first to the last. The memory that it uses does not depend on
// the number of lines.
class ReportBuilder
{
  public:
    // What a story or a remark tells is also given to these, for a timeline.
    explicit ReportBuilder(TakeTold alsoTold = {}, TakeRemark alsoRemark = {});

    // The next file begins.
    void Begin(std::filesystem::path const& file);

    // Its next line. The place of a line of the app; nothing for other text.
    std::optional<LogPlace> Add(Entry const& entry);

    // There are no more lines; `asOf` as for StoryTracker::End.
    Report End(std::optional<LogTime> asOf);

  private:
    void CountFile(Entry const& entry, bool isOwn);
    void ReadHeader(LogPlace const& place, std::string_view message);
    void Watch(LogPlace const& place, std::string_view message);
    void CountWorked(Stage stage, LogPlace const& place);
    void Take(Told const& told);
    void Take(Remark const& remark, LogPlace const& first, LogPlace const& last);
    void Note(std::vector<Finding>& findings, Finding finding);
    Evidence EvidenceAt(LogPlace const& place) const;

    TakeTold m_alsoTold;
    TakeRemark m_alsoRemark;
    TakeRemark m_takeRemark;
    StoryTracker m_tracker;
    RegistrationWatch m_registrations;
    TimerWatch m_timer;
    PushWatch m_pushes;
    ClosingWatch m_closings;
    ConnectionWatch m_connections;
    ClockWatch m_clock;
    CopyWatch m_copies;
    std::array<std::optional<LogPlace>, stageCount> m_lastWorked; // where each stage did
    Report m_report;
};

} // namespace doctor
