#pragma once
#include "tests/unit/logging/WrappedSystem.h"

#include <set>

namespace test
{

// The handles that are open since it was made, told by the calls that make and close them: Wine's own count of a
// process's handles is always zero. Faults are made on top of it.
class HandleLedger
{
  public:
    std::size_t Open() const noexcept { return m_open.size(); }

  private:
    HANDLE Opened(HANDLE handle)
    {
        if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
        {
            m_open.insert(handle);
        }
        return handle;
    }

    std::multiset<HANDLE> m_open;
    CreateFileCall m_createFile{[this](auto next, auto... arguments) { return Opened(next(arguments...)); }};
    CreateMutexCall m_createMutex{[this](auto next, auto... arguments) { return Opened(next(arguments...)); }};
    OpenMutexCall m_openMutex{[this](auto next, auto... arguments) { return Opened(next(arguments...)); }};
    FindFirstFileCall m_findFirst{[this](auto next, auto... arguments) { return Opened(next(arguments...)); }};
    CloseHandleCall m_close{[this](auto next, HANDLE handle) {
        m_open.erase(handle);
        return next(handle);
    }};
    FindCloseCall m_findClose{[this](auto next, HANDLE handle) {
        m_open.erase(handle);
        return next(handle);
    }};
};

} // namespace test
