#include "explore/log/MutexCalls.h"

#include <algorithm>

namespace explore
{

namespace
{

class MutexHandle : public KernelObject
{
  public:
    explicit MutexHandle(std::shared_ptr<Mutex> mutex) : m_mutex(std::move(mutex)) {}

    std::shared_ptr<Mutex> const& Held() const noexcept { return m_mutex; }

  private:
    std::shared_ptr<Mutex> m_mutex;
};

} // namespace

bool MutexCalls::LetTimeOut()
{
    m_isTimedOut = m_isWaiting;
    return std::ranges::find(m_isWaiting, true) != m_isWaiting.end();
}

void MutexCalls::Abandon(ProcessNumber process)
{
    m_isWaiting[process] = false;
    m_mutexes.ForEach([&](Mutex& mutex) { mutex.Abandon(process); });
}

HANDLE MutexCalls::Create(wchar_t const* name)
{
    return m_kernel.Call("CreateMutex", [&] {
        auto existed = false;
        auto* const handle = m_kernel.Add(std::make_shared<MutexHandle>(m_mutexes.Create(name, existed)));
        m_kernel.Succeeds(existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
        return handle;
    });
}

HANDLE MutexCalls::Open(wchar_t const* name)
{
    return m_kernel.Call("OpenMutex", [&]() -> HANDLE {
        auto mutex = m_mutexes.Find(name);
        return m_kernel.Succeeds(mutex ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND)
                   ? m_kernel.Add(std::make_shared<MutexHandle>(std::move(mutex)))
                   : nullptr;
    });
}

DWORD MutexCalls::Wait(HANDLE handle)
{
    auto const process = m_kernel.Current();
    auto const* const held = m_kernel.Find<MutexHandle>(handle);
    auto* const mutex = held != nullptr ? held->Held().get() : nullptr;
    m_isWaiting[process] = true;
    return m_kernel.Call(
        "WaitForSingleObject",
        [&]() -> DWORD {
            m_isWaiting[process] = m_isTimedOut[process] = false;
            DWORD result = WAIT_FAILED;
            if (mutex != nullptr && mutex->IsFreeFor(process))
            {
                result = mutex->Acquire(process) ? WAIT_ABANDONED : WAIT_OBJECT_0;
            }
            else if (mutex != nullptr)
            {
                result = WAIT_TIMEOUT;
            }
            m_kernel.Note(result);
            return result;
        },
        [&] { return mutex == nullptr || mutex->IsFreeFor(process) || m_isTimedOut[process]; });
}

BOOL MutexCalls::Release(HANDLE handle)
{
    return m_kernel.Call("ReleaseMutex", [&]() -> BOOL {
        auto const* const held = m_kernel.Find<MutexHandle>(handle);
        return held != nullptr &&
               m_kernel.Succeeds(held->Held()->Release(m_kernel.Current()) ? ERROR_SUCCESS : ERROR_NOT_OWNER);
    });
}

} // namespace explore
