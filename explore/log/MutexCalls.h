#pragma once
#include "explore/log/Kernel.h"
#include "explore/log/Mutexes.h"
#include "tests/support/WrappedSystem.h"

namespace explore
{

// The system's calls for mutexes.
class MutexCalls
{
  public:
    MutexCalls(Kernel& kernel, Mutexes& mutexes) : m_kernel(kernel), m_mutexes(mutexes) {}

    // Lets the waits that wait now run into their time limits; false when there are none.
    bool LetTimeOut();

    // The process ends.
    void Abandon(ProcessNumber process);

  private:
    HANDLE Create(wchar_t const* name);
    HANDLE Open(wchar_t const* name);
    DWORD Wait(HANDLE handle);
    BOOL Release(HANDLE handle);

    Kernel& m_kernel;
    Mutexes& m_mutexes;
    std::array<bool, Kernel::mostProcesses> m_isWaiting = {};
    std::array<bool, Kernel::mostProcesses> m_isTimedOut = {};

    test::CreateMutexCall m_createMutex{[this](auto, auto, BOOL, wchar_t const* name) { return Create(name); }};
    test::OpenMutexCall m_openMutex{[this](auto, DWORD, BOOL, wchar_t const* name) { return Open(name); }};
    test::WaitCall m_wait{[this](auto, HANDLE handle, DWORD) { return Wait(handle); }};
    test::ReleaseMutexCall m_release{[this](auto, HANDLE handle) { return Release(handle); }};
};

} // namespace explore
