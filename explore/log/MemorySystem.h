#pragma once
#include "explore/log/ClockCalls.h"
#include "explore/log/FileCalls.h"
#include "explore/log/MachineCalls.h"
#include "explore/log/MutexCalls.h"

namespace explore
{

// The system calls of the log, made on files, mutexes and a clock in memory. While an object exists, it takes these
// calls of the whole program.
class MemorySystem
{
  public:
    explicit MemorySystem(Kernel::Await await = nullptr) : kernel(std::move(await)) {}

    // Ends a process: its handles are closed, its mutexes abandoned.
    void End(ProcessNumber process)
    {
        m_mutexCalls.Abandon(process);
        kernel.CloseAllOf(process);
    }

    bool LetTimeOut() { return m_mutexCalls.LetTimeOut(); }

    // Of all that the processes have seen or can see.
    std::uint64_t StateHash() const
    {
        Hash hash(kernel.StateHash());
        hash.Add(files.StateHash());
        hash.Add(mutexes.StateHash());
        hash.Add(clock.Seconds());
        return hash.Value();
    }

    Files files;
    Mutexes mutexes;
    Clock clock;
    Kernel kernel; // holds handles of the above: goes before them

  private:
    FileCalls m_fileCalls{kernel, files};
    MutexCalls m_mutexCalls{kernel, mutexes};
    ClockCalls m_clockCalls{kernel, clock};
    MachineCalls m_machineCalls;
    test::CloseHandleCall m_closeHandle{[this](auto, HANDLE handle) {
        return kernel.Call("CloseHandle", [&] { return static_cast<BOOL>(kernel.Close(handle)); });
    }};
};

} // namespace explore
