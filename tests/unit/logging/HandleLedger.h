#pragma once
#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>
#include <set>

namespace test
{

// Counts the handles opened since its creation and not closed, through the calls that do so: Wine's own count of a
// process's handles is always zero. Closing a handle that is not open, or twice, fails the test: its value may denote
// another file by then. Create faults after the ledger.
class HandleLedger
{
  public:
    std::size_t Open() const noexcept { return m_handles.size() + m_searches.size(); }

  private:
    using Handles = std::set<HANDLE>;

    static HANDLE Opened(Handles& handles, HANDLE handle)
    {
        if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
        {
            handles.insert(handle);
        }
        return handle;
    }

    static void Closing(Handles& handles, HANDLE handle)
    {
        EXPECT_EQ(handles.erase(handle), 1u) << "closed without being open: " << handle;
    }

    Handles m_handles;
    Handles m_searches;
    CreateFileCall m_createFile{[this](auto next, auto... arguments) { return Opened(m_handles, next(arguments...)); }};
    CreateMutexCall m_createMutex{
        [this](auto next, auto... arguments) { return Opened(m_handles, next(arguments...)); }};
    OpenMutexCall m_openMutex{[this](auto next, auto... arguments) { return Opened(m_handles, next(arguments...)); }};
    FindFirstFileCall m_findFirst{
        [this](auto next, auto... arguments) { return Opened(m_searches, next(arguments...)); }};
    CloseHandleCall m_close{[this](auto next, HANDLE handle) {
        Closing(m_handles, handle);
        return next(handle);
    }};
    FindCloseCall m_findClose{[this](auto next, HANDLE handle) {
        Closing(m_searches, handle);
        return next(handle);
    }};
};

} // namespace test
