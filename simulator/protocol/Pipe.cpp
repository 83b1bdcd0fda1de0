#include "simulator/protocol/Pipe.h"

#include <windows.h>

namespace sim
{

Handle MakePipe(std::wstring const& name)
{
    constexpr DWORD bufferSize = 65536;
    return Handle(CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED,
                                   PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS,
                                   PIPE_UNLIMITED_INSTANCES, bufferSize, bufferSize, 0, nullptr));
}

Handle ConnectPipe(std::wstring const& name)
{
    for (;;)
    {
        Handle pipe(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED, nullptr));
        if (pipe || GetLastError() != ERROR_PIPE_BUSY)
        {
            return pipe;
        }
        // Another client took the end; the server creates the next one at once.
        if (!WaitNamedPipeW(name.c_str(), hungAfter) && GetLastError() == ERROR_SEM_TIMEOUT)
        {
            return {};
        }
    }
}

} // namespace sim
