#pragma once
#include "explore/log/Files.h"

#include <string>
#include <vector>

namespace zant
{
class LogTargetDefault;
}

namespace explore
{

// A line that a process has asked for.
struct LineRecord
{
    std::wstring message;
    bool isAcknowledged = false; // the call has returned
    bool isWithoutRoom = false;  // the disk was full meanwhile
};

// A process that logs as the app does.
class LogProcess
{
  public:
    // `lines` and `files` outlive the process.
    LogProcess(std::wstring name, std::vector<LineRecord>& lines, Files const& files)
        : m_name(std::move(name)), m_lines(lines), m_files(files)
    {
    }

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
    bool IsRegistered() const noexcept { return m_isRegistered; }

  private:
    std::wstring m_name;
    std::vector<LineRecord>& m_lines;
    Files const& m_files;
    unsigned m_lineCount = 0;
    zant::LogTargetDefault* m_target = nullptr;
    bool m_isRegistered = false;
};

} // namespace explore
