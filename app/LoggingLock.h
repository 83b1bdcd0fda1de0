#pragma once
#include <string>
#include <windows.h>

// Serialises the calls into the logger, whose component and category fields are shared. Valid within this process only:
// the name is stored, and no named object is created from it.
struct LoggingLock
{
    LoggingLock() : name(L"VelmoNotificationClientLock") { InitializeCriticalSection(&section); }

    LoggingLock(LoggingLock const&) = delete;
    LoggingLock& operator=(LoggingLock const&) = delete;

    ~LoggingLock() { DeleteCriticalSection(&section); }

    std::wstring name;
    CRITICAL_SECTION section;
};

// Holds a LoggingLock until the end of a scope.
class LoggingScope
{
  public:
    explicit LoggingScope(LoggingLock& lock) noexcept : m_lock(lock) { EnterCriticalSection(&m_lock.section); }

    LoggingScope(LoggingScope const&) = delete;
    LoggingScope& operator=(LoggingScope const&) = delete;

    ~LoggingScope() { LeaveCriticalSection(&m_lock.section); }

  private:
    LoggingLock& m_lock;
};
