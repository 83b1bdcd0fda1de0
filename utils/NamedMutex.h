#pragma once
#include "utils/UniqueHandle.h"

namespace zant
{

enum class MutexWait
{
    Acquired,
    Abandoned, // acquired; its previous owner ended without releasing it
    TimedOut,
    Failed
};

// One wait for a mutex and, if it succeeds, the ownership until the end of the scope. A mutex belongs to the thread
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

// Creates the mutex of that name (not owned) or opens an existing one. True when the holder has a handle; returns at
// once if it had one before. When access is denied (a process with other rights created it), the mutex is opened
// without any access right: a wait on such a handle may fail, and reports that.
bool CreateOrOpenMutex(UniqueHandle& holder, wchar_t const* name) noexcept;

// A mutex that processes share by its name. Empty before CreateOrOpen.
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
