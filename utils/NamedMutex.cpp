#include "utils/NamedMutex.h"

namespace zant
{

namespace
{

MutexWait ToOutcome(DWORD result) noexcept
{
    switch (result)
    {
    case WAIT_OBJECT_0:
        return MutexWait::Acquired;
    case WAIT_ABANDONED:
        return MutexWait::Abandoned;
    case WAIT_TIMEOUT:
        return MutexWait::TimedOut;
    default:
        return MutexWait::Failed;
    }
}

} // namespace

MutexScope::MutexScope(HANDLE mutex, DWORD milliseconds) noexcept
    : m_mutex(mutex), m_outcome(ToOutcome(WaitForSingleObject(mutex, milliseconds)))
{
}

MutexScope::~MutexScope()
{
    if (IsOwner())
    {
        ReleaseMutex(m_mutex);
    }
}

bool CreateOrOpenMutex(UniqueHandle& holder, wchar_t const* name) noexcept
{
    if (holder)
    {
        return true;
    }
    holder = UniqueHandle(CreateMutexW(nullptr, FALSE, name));
    if (!holder && GetLastError() == ERROR_ACCESS_DENIED)
    {
        holder = UniqueHandle(OpenMutexW(0, FALSE, name));
    }
    return static_cast<bool>(holder);
}

} // namespace zant
