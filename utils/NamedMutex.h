#pragma once
#include "utils/UniqueHandle.h"

namespace zant
{

enum class MutexWait
{
    Acquired,
    Abandoned, // acquired; its last owner ended without releasing it
    TimedOut,
    Failed
};

// One wait for a mutex and, when it got it, the ownership until the end of the scope. A mutex belongs to the thread
// that waited, so a scope stays on its thread.
class [[nodiscard]] MutexScope
{
  public:
    MutexScope(HANDLE mutex, DWORD milliseconds) noexcept;
    MutexScope(MutexScope const&) = delete;
    MutexScope& operator=(MutexScope const&) = delete;
    ~MutexScope();

    MutexWait Outcome() const noexcept { return m_outcome; }

    bool IsOwner() const noexcept { return m_outcome == MutexWait::Acquired || m_outcome == MutexWait::Abandoned; }

  private:
    HANDLE m_mutex;
    MutexWait m_outcome;
};

// Gives the holder the mutex of that name, created (not owned) or joined where it exists; true when the holder has a
// handle, at once when it already had one. Where access is denied (a process of other rights made it) the mutex is
// opened without asking for any right: a wait on such a handle may fail, and the wait's outcome tells.
bool CreateOrOpenMutex(UniqueHandle& holder, wchar_t const* name) noexcept;

// A mutex that processes share by its name, or nothing yet.
class NamedMutex
{
  public:
    bool CreateOrOpen(wchar_t const* name) noexcept { return CreateOrOpenMutex(m_handle, name); }

    explicit operator bool() const noexcept { return static_cast<bool>(m_handle); }

    MutexScope Wait(DWORD milliseconds) const noexcept { return MutexScope(m_handle.Get(), milliseconds); }

  private:
    UniqueHandle m_handle;
};

} // namespace zant
