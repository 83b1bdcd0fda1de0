#include "simulator/protocol/IoThreads.h"

#include <bit>

namespace sim
{

IoThreads& IoThreads::Instance()
{
    static auto* const threads = new IoThreads;
    return *threads;
}

IoThreads::IoThreads() : m_port(CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 0))
{
    constexpr int count = 2; // one may wait for an operation that the other completes
    for (int thread = 0; thread < count; ++thread)
    {
        Handle const handle(CreateThread(nullptr, 0, Work, this, 0, nullptr));
    }
}

bool IoThreads::Serve(HANDLE file, Ended ended) const
{
    return CreateIoCompletionPort(file, m_port.Get(), std::bit_cast<ULONG_PTR>(ended), 0) != nullptr;
}

void IoThreads::Post(OVERLAPPED* operation, Ended ended) const
{
    PostQueuedCompletionStatus(m_port.Get(), 0, std::bit_cast<ULONG_PTR>(ended), operation);
}

DWORD WINAPI IoThreads::Work(void* self)
{
    auto* const port = static_cast<IoThreads*>(self)->m_port.Get();
    for (;;)
    {
        DWORD size = 0;
        ULONG_PTR ended = 0;
        OVERLAPPED* operation = nullptr;
        auto const done = GetQueuedCompletionStatus(port, &size, &ended, &operation, INFINITE);
        auto const error = done ? ERROR_SUCCESS : GetLastError();
        if (operation)
        {
            std::bit_cast<Ended>(ended)(operation, error, size);
        }
    }
}

} // namespace sim
