#include "explore/log/LogPlay.h"

#include "logging/LogTargetDefault.h"
#include "logging/RotationLimit.h"

namespace explore
{

namespace
{

constexpr auto limit = zant::RotationLimit(zant::LogLevel::Info);

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
    if (story.prepare != nullptr)
    {
        story.prepare(m_system.files);
    }
    m_processes.reserve(story.processes.size() + 1); // they stay where they are
    for (auto const& script : story.processes)
    {
        Add(script);
    }
}

LogPlay::~LogPlay()
{
    zant::g_defaultLogTarget = nullptr;
}

void LogPlay::Add(Script const& script)
{
    auto const number = static_cast<ProcessNumber>(m_processes.size());
    m_processes.emplace_back(std::wstring(1, static_cast<wchar_t>(L'A' + number)), m_record.lines, m_system.files);
    m_isKilled.push_back(false);
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
        }
    }
}

void LogPlay::LookAtProcess(ProcessNumber number)
{
    AsSystem const memory;
    if (m_processes[number].IsSilent())
    {
        m_record.troubles.push_back("silent: " + NameOf(number));
    }
}

bool LogPlay::OnFault(FaultNumber fault, ProcessNumber process)
{
    switch (Fault{fault})
    {
    case Fault::Kill:
        m_record.isCopiedNotEmptied = m_record.isCopiedNotEmptied || IsCopiedNotEmptied();
        m_system.End(process);
        m_isKilled[process] = true;
        ++m_record.killed;
        return true;
    case Fault::Full:
    case Fault::AlmostFull:
        m_system.files.room = Fault{fault} == Fault::Full ? 0 : 7;
        m_record.wasFull = true;
        return false;
    case Fault::SecondPasses:
        m_system.clock.Advance(1);
        m_record.wasSecond = true;
        return false;
    }
    return false;
}

void LogPlay::OnMeeting(unsigned meeting)
{
    auto& files = m_system.files;
    if (meeting == 2)
    {
        files.room = Files::unlimited;
        m_system.clock.Advance(60); // what follows has copies of its own
    }
    else if (meeting == 1 && m_story.isAtLimit)
    {
        auto const old = std::string("o\0l\0d\0\r\0\n\0", 10);
        auto* const log = files.Find(logPath);
        log->content = FileContent(log->content.Bytes() + old, limit);
    }
}

// Whether all of the log stands in a copy as well.
bool LogPlay::IsCopiedNotEmptied() const
{
    auto const* const log = m_system.files.Find(logPath);
    if (log == nullptr || log->content.Size() < limit)
    {
        return false;
    }
    auto const lines = std::string_view(log->content.Bytes()).substr(2);
    auto isCopied = false;
    m_system.files.ForEach([&](std::wstring const&, File const& file) {
        isCopied = isCopied || (&file != log && !file.isDeletedOnClose && file.content.Bytes().ends_with(lines));
    });
    return isCopied;
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
        m_record.troubles.push_back("stuck");
        return true;
    }
    for (ProcessNumber process = 0; process < m_processes.size(); ++process)
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
        m_record.troubles.push_back("stuck");
    }
    return true;
}

} // namespace explore
