#pragma once
#include "simulator/base/Handle.h"

#include <windows.h>

namespace sim
{

// The threads of a process that start its overlapped reads and writes and handle their completion. They never end,
// unlike those of the system's pool, which do after five idle seconds: Wine completes an operation on the thread that
// started it, and if that thread is just ending, the data read is lost and the operation fails with ERROR_ALERTED.
class IoThreads
{
  public:
    // Called on one of the threads. It may wait for an operation that another of them completes.
    using Ended = void (*)(OVERLAPPED* operation, DWORD error, DWORD size);

    // Never destroyed: its threads run until the process ends.
    static IoThreads& Instance();

    IoThreads(IoThreads const&) = delete;
    IoThreads& operator=(IoThreads const&) = delete;
    ~IoThreads() = delete;

    // Operations on the file complete on these threads from now on. False on failure.
    bool Serve(HANDLE file, Ended ended) const;

    // Calls `ended` on one of the threads, without an error, for an operation that is to be started there.
    void Post(OVERLAPPED* operation, Ended ended) const;

  private:
    IoThreads();

    static DWORD WINAPI Work(void* self);

    Handle m_port;
};

} // namespace sim
