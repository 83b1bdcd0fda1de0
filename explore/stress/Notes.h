#pragma once
#include "simulator/base/Handle.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace explore::stress
{

// What a process that writes says of itself, in memory that outlives it; and what it is asked for.
struct Note
{
    // Said to it before it starts: which lines are its own.
    std::uint64_t first;
    std::uint64_t last;

    std::atomic<bool> shallCheck; // the log's size, before the next line

    std::atomic<std::uint32_t> thread;
    std::atomic<std::uint64_t> begun;        // the last line whose call has begun
    std::atomic<std::uint64_t> acknowledged; // the last one whose call has returned
    std::atomic<std::uint64_t> slowest;      // the longest call, in microseconds
    std::atomic<bool> isChecking;            // the log's size
    std::atomic<bool> isSilent;
};

// What the processes of one run share: a note for each, and two events.
class Notes
{
  public:
    static constexpr std::uint32_t most = 16'384; // more than one process a second in a run of hours

    // name: of this run alone. Throws sim::Error.
    explicit Notes(std::wstring const& name);
    Notes(Notes const&) = delete;
    Notes& operator=(Notes const&) = delete;
    ~Notes();

    Note& operator[](std::uint32_t life) const noexcept { return m_notes[life]; }

    HANDLE Ready() const { return m_ready.Get(); } // one has opened the log; resets itself
    HANDLE Go() const { return m_go.Get(); }       // they may write; stays

  private:
    sim::Handle m_ready;
    sim::Handle m_go;
    sim::Handle m_memory;
    Note* m_notes;
};

// Where the run of that name has its log: in a folder of its own, under a name of its own, since the processes' mutex
// is named after the file.
std::wstring FolderOfRun(std::wstring const& name);
std::wstring LogOfRun(std::wstring const& name);

} // namespace explore::stress
