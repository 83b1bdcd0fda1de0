#include "explore/log/LogPlay.h"

#include "explore/log/LogFiles.h"
#include "logging/LogTargetDefault.h"
#include "logging/RotationLimit.h"

namespace explore
{

namespace
{

constexpr auto limit = zant::RotationLimit(zant::LogLevel::Info);
constexpr std::string_view mark = "\xFF\xFE";

std::string BytesOf(std::wstring const& text)
{
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)};
}

std::string NameOf(ProcessNumber process)
{
    return std::string(1, static_cast<char>('A' + process));
}

} // namespace

std::vector<std::string> const& FaultNames()
{
    static std::vector<std::string> const names = {"kill", "full", "almost-full", "second"};
    return names;
}

LogPlay::LogPlay(Story const& story)
    : m_story(story), m_system([this](std::function<bool()> const& isReady) { m_scheduler.Await(isReady); }),
      m_spoilt(story.spoil != nullptr ? story.spoil() : nullptr),
      m_scheduler({[this](ProcessNumber process) {
                       m_system.kernel.Switch(process);
                       m_processes[process].Enter();
                   },
                   [this](FaultNumber fault, ProcessNumber process) { return OnFault(fault, process); },
                   [this] { return m_system.LetTimeOut(); }, [this](unsigned meeting) { OnMeeting(meeting); }})
{
    ProcessMemory::Reset();
    Prepare();
    m_processes.reserve(story.processes.size() + 1); // they stay where they are
    for (auto const& script : story.processes)
    {
        Add(script);
    }
}

// What stands there before the first process starts is to be found afterwards.
void LogPlay::Prepare()
{
    if (m_story.prepare != nullptr)
    {
        m_story.prepare(m_system.files);
    }
    for (auto const& file : ReadLogFiles(m_system.files))
    {
        for (auto const& line : file.lines)
        {
            m_record.lines.push_back({.message = line, .isAcknowledged = true, .isOld = true});
        }
        if (!file.IsCopy() && !file.hasMark)
        {
            m_record.otherText = file.bytes;
        }
    }
    m_system.files.ForEach([this](std::wstring const& path, File const& file) {
        if (!path.starts_with(logFolder) && (file.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        {
            m_record.otherFiles[path] = file.content.Bytes();
        }
    });
    m_system.files.onChange = [this](FileChange change, std::wstring const& path, File const& file) {
        OnChange(change, path, file);
    };
}

LogPlay::~LogPlay()
{
    zant::g_defaultLogTarget = nullptr;
}

void LogPlay::Add(Script const& script)
{
    auto const number = static_cast<ProcessNumber>(m_processes.size());
    m_processes.emplace_back(std::wstring(1, static_cast<wchar_t>(L'A' + number)), m_record.lines);
    m_scheduler.Add([this, number, &script] {
        auto& process = m_processes[number];
        Do(process, script.before);
        m_scheduler.Meet();
        Do(process, script.during);
        m_scheduler.Meet();
        process.Line();
        LookAtProcess(number);
        process.Close();
    });
}

void LogPlay::Do(LogProcess& process, std::vector<Act> const& acts)
{
    for (auto const act : acts)
    {
        Do(process, act);
    }
}

void LogPlay::Do(LogProcess& process, Act act)
{
    switch (act)
    {
    case Act::Start:
        process.Start();
        break;
    case Act::Line:
        process.Line();
        break;
    case Act::MakeCheckDue:
        process.MakeCheckDue();
        break;
    case Act::FillLog:
        m_system.kernel.Call("fills the log", [this] { FillLog(); }, [this] { return IsLogFree(); });
        break;
    case Act::WaitSecond:
        m_system.kernel.Call("waits a second", [this] { m_system.clock.Advance(1); });
        break;
    }
}

// Stands for the many lines by which a process brings the log to its limit. They stand before all others: the log's
// end may be unfinished.
void LogPlay::FillLog()
{
    auto* const log = m_system.files.Find(logPath);
    if (log == nullptr || m_system.files.IsFull())
    {
        return;
    }
    auto const old = L"old " + std::to_wstring(++m_oldLines);
    auto bytes = log->content.Bytes();
    bytes.erase(0, mark.size());
    log->content = FileContent(std::string(mark) + BytesOf(old + L"\r\n") + bytes, limit);
    m_record.lines.push_back({.message = old, .isAcknowledged = true, .isOld = true});
}

// Whether no process is within a line.
bool LogPlay::IsLogFree() const
{
    auto const mutex = m_system.mutexes.Find(L"KZEB.log");
    return mutex == nullptr || !mutex->owner;
}

void LogPlay::LookAtProcess(ProcessNumber number)
{
    AsSystem const memory;
    if (m_processes[number].IsSilent())
    {
        m_record.troubles.push_back("silent: " + NameOf(number));
    }
    m_system.mutexes.ForEach([&](Mutex const& mutex) {
        if (mutex.owner == number)
        {
            m_record.troubles.push_back("mutex held: " + NameOf(number));
        }
    });
}

void LogPlay::OnChange(FileChange change, std::wstring const& path, File const& file)
{
    m_watch.OnChange(change, path, file);
    if (change == FileChange::Cut && path == logPath)
    {
        m_processes[m_system.kernel.Current()].OnCut();
    }
}

bool LogPlay::OnFault(FaultNumber fault, ProcessNumber process)
{
    switch (Fault{fault})
    {
    case Fault::Kill:
        if (auto const mutex = m_system.mutexes.Find(L"KZEB.log"); mutex != nullptr && mutex->owner == process)
        {
            m_watch.OnKill();
        }
        m_system.End(process);
        return true;
    case Fault::Full:
    case Fault::AlmostFull:
        m_system.files.room = Fault{fault} == Fault::Full ? 0 : 7;
        return false;
    case Fault::SecondPasses:
        m_system.clock.Advance(1);
        return false;
    }
    return false;
}

void LogPlay::OnMeeting(unsigned meeting)
{
    if (meeting == 2)
    {
        m_system.files.room = Files::unlimited;
        m_system.clock.Advance(60); // what follows has copies of its own
    }
    else if (meeting == 1 && m_story.isAtLimit)
    {
        FillLog();
    }
}

bool LogPlay::Run(Decide const& decide)
{
    auto const end = m_scheduler.Run(decide);
    if (end == Scheduler::End::LeftOff)
    {
        return false;
    }
    if (end == Scheduler::End::Stuck)
    {
        m_record.troubles.emplace_back("stuck");
        return true;
    }
    auto const count = static_cast<ProcessNumber>(m_processes.size());
    for (ProcessNumber process = 0; process < count; ++process)
    {
        if (m_system.kernel.HandlesOf(process) != 0)
        {
            m_record.troubles.push_back("handle open: " + NameOf(process));
        }
    }
    Script const another{{Act::Start, Act::Line}, {}};
    Add(another);
    if (m_scheduler.Run(decide) != Scheduler::End::All)
    {
        m_record.troubles.emplace_back("stuck");
    }
    return true;
}

} // namespace explore
