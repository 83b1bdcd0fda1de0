#pragma once
#include "explore/harness/Scheduler.h"
#include "explore/log/LogProcess.h"
#include "explore/log/LogRecord.h"
#include "explore/log/LogWatch.h"
#include "explore/log/MemorySystem.h"
#include "explore/log/Story.h"

#include <string>
#include <vector>

namespace explore
{

// What can be injected at any call.
enum class Fault : FaultNumber
{
    Kill,         // the process ends before its call
    Full,         // nothing more fits on the disk
    AlmostFull,   // seven more bytes fit
    SecondPasses, // the clock goes on by a second
};

// By their numbers, for IDs of plays.
std::vector<std::string> const& FaultNames();

// Plays a story once. Afterwards the disk has room, each process that lives writes one more line, and a new one starts
// and writes one.
class LogPlay
{
  public:
    explicit LogPlay(Story const& story);
    LogPlay(LogPlay const&) = delete;
    LogPlay& operator=(LogPlay const&) = delete;
    ~LogPlay();

    // False: it was left off.
    bool Run(Decide const& decide);

    LogRecord const& Record() const noexcept { return m_record; }
    MemorySystem const& System() const noexcept { return m_system; }

  private:
    void Prepare();
    void Add(Script const& script);
    void Do(LogProcess& process, std::vector<Act> const& acts);
    void Do(LogProcess& process, Act act);
    void FillLog();
    bool IsLogFree() const;
    void OnChange(FileChange change, std::wstring const& path, File const& file);
    bool OnFault(FaultNumber fault, ProcessNumber process);
    void OnMeeting(unsigned meeting);
    void LookAtProcess(ProcessNumber number);

    Story const& m_story;
    MemorySystem m_system;
    std::shared_ptr<void> m_spoilt;
    LogRecord m_record{m_system.files};
    LogWatch m_watch{m_record, m_system.clock};
    unsigned m_oldLines = 0;
    std::vector<LogProcess> m_processes;
    Scheduler m_scheduler;
};

} // namespace explore
