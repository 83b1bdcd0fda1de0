#pragma once
#include "simulator/base/Handle.h"

#include <windows.h>

namespace sim
{

// The threads of a process that begin its overlapped reads and writes and hear of their end. They never end, unlike
// those of the system's pool, which do after five idle seconds: Wine tells the end of an operation to the thread that
// began it, and where that thread is just ending, what was read is lost and the operation fails with ERROR_ALERTED.
class IoThreads
{
  public:
    // Called on one of the threads. It may wait for an operation that another of them ends.
    using Ended = void (*)(OVERLAPPED* operation, DWORD error, DWORD size);

    // Never destroyed: at the end of the process its threads are still in it.
    static IoThreads& Instance();

    IoThreads(IoThreads const&) = delete;
    IoThreads& operator=(IoThreads const&) = delete;
    ~IoThreads() = delete;

    // Whether what is begun on the file ends on these threads from now on.
    bool Serve(HANDLE file, Ended ended) const;

    // Calls `ended` on one of the threads, without an error, for an operation that is to be begun there.
    void Post(OVERLAPPED* operation, Ended ended) const;

  private:
    IoThreads();

    static DWORD WINAPI Work(void* self);

    Handle m_port;
};

} // namespace sim
