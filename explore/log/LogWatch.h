#pragma once
#include "explore/log/Clock.h"
#include "explore/log/LogRecord.h"

namespace explore
{

// Watches what happens to the log and its copies, and notes what the rules let be missing or stand there twice.
class LogWatch
{
  public:
    LogWatch(LogRecord& record, Clock const& clock) : m_record(record), m_clock(clock) {}

    void OnChange(FileChange change, std::wstring const& path, File const& file);
    // The process that rotates the log is about to end.
    void OnKill();

  private:
    void OnBegin(std::wstring const& path, File const& file);
    void OnEmpty(std::wstring const& path, File const& file);
    void OnDelete(std::wstring const& path, File const& file);
    bool IsOfNow(std::wstring const& path) const;
    bool IsNotKept(std::wstring const& path) const;

    LogRecord& m_record;
    Clock const& m_clock;
    std::wstring m_copy; // the last one that was begun
};

} // namespace explore
