#include "explore/stress/Writing.h"

#include "explore/stress/Notes.h"
#include "explore/stress/StressLine.h"
#include "logging/LogPath.h"
#include "logging/LogTargetDefault.h"
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"

#include <algorithm>
#include <chrono>

namespace explore::stress
{

namespace
{

std::wstring Wide(std::string_view text)
{
    return {text.begin(), text.end()}; // ASCII
}

class Writer
{
  public:
    Writer(Note& note, std::uint32_t life) : m_note(note), m_life(life) {}

    // False when the log cannot be written.
    bool Open(std::wstring const& path)
    {
        m_note.thread = GetCurrentThreadId();
        m_note.isChecking = true;
        zant::g_defaultLogTarget = new zant::LogTargetDefault;
        zant::g_defaultLogTarget->filePath = path;
        zant::g_defaultLogTarget->fileName = zant::FileNameOf(path);
        auto const isOpen = zant::RegisterDefaultTarget(zant::GetLogTargetRegistry());
        m_note.isChecking = false;
        m_logger.product = Wide(product);
        m_logger.component = Wide(component);
        m_logger.category = Wide(category);
        return isOpen && !IsSilent();
    }

    // False when it was not written, since the process is silent.
    bool Write(std::uint64_t number)
    {
        using Clock = std::chrono::steady_clock;
        auto const message = Wide(MessageOf({m_life, number}));
        if (m_note.shallCheck.exchange(false))
        {
            m_note.isChecking = true;
            zant::g_defaultLogTarget->lastCheck = 0;
        }
        m_note.begun = number;
        auto const before = Clock::now();
        m_logger.Info(L"%ls", message.c_str());
        auto const taken = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - before);
        m_note.slowest = std::max(m_note.slowest.load(), static_cast<std::uint64_t>(taken.count()));
        if (IsSilent())
        {
            return false;
        }
        m_note.acknowledged = number;
        m_note.isChecking = false;
        return true;
    }

  private:
    static bool IsSilent() { return !zant::g_defaultLogTarget->useLock; }

    Note& m_note;
    std::uint32_t m_life;
    zant::Logger m_logger;
};

} // namespace

int WriteLines(std::wstring const& run, std::uint32_t life)
{
    Notes const notes(run);
    auto& note = notes[life];
    Writer writer(note, life);
    note.isSilent = !writer.Open(LogOfRun(run));
    SetEvent(notes.Ready());
    WaitForSingleObject(notes.Go(), INFINITE);
    for (auto number = note.first; number <= note.last && !note.isSilent; ++number)
    {
        note.isSilent = !writer.Write(number);
    }
    return note.isSilent ? 1 : 0;
}

} // namespace explore::stress
