#pragma once
#include "explore/log/LogRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace zant
{
class LogTargetDefault;
}

namespace explore
{

// A process that logs as the app does.
class LogProcess
{
  public:
    // `lines` outlive the process.
    LogProcess(std::wstring name, std::vector<LineRecord>& lines) : m_name(std::move(name)), m_lines(lines) {}

    // What the process does; in its own memory.

    void Start();
    void Line();
    // The next line checks the file's size.
    void MakeCheckDue() const;
    void Close() const;

    // What is looked at from without.

    // Makes the process's variables those of the program.
    void Enter() const;
    bool IsSilent() const;
    // A write to the log does not fit.
    void OnCut();
    bool IsRegistered() const noexcept { return m_isRegistered; }

  private:
    std::wstring m_name;
    std::vector<LineRecord>& m_lines;
    std::optional<std::size_t> m_line = {}; // that is being written
    unsigned m_lineCount = 0;
    zant::LogTargetDefault* m_target = nullptr;
    bool m_isRegistered = false;
};

} // namespace explore
