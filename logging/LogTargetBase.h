#pragma once
#include "logging/LogHeaderText.h"
#include "utils/LogLevel.h"
#include "utils/UniqueHandle.h"

#include <cstdarg>
#include <cstdint>
#include <string>
#include <windows.h>

namespace zant
{

// A log target. The order of the operations is a binary interface, counted as in AbstractLogger: a slot is the place in
// this declaration from 0, the destructor taking one slot (1) although this compiler's table holds two entries for it.
// The order of the fields is fixed as well; they are public since the application configures its target through them.
class LogTargetBase
{
  public:
    LogTargetBase(LogTargetBase const&) = delete;
    LogTargetBase& operator=(LogTargetBase const&) = delete;

    // Opens or creates the file at filePath. False when both fail.
    virtual bool OpenFile(UniqueHandle& handle) = 0;

    virtual ~LogTargetBase();

    // Prepares the target for lines. False when it is disabled or its file cannot be opened.
    virtual bool Open() = 0;

    // Always true.
    virtual bool Close() = 0;

    // Writes one line if the level reaches the threshold. Null fields count as empty; a null format writes nothing; a
    // null argument list makes the format the message. `time` is in milliseconds since 1970, UTC; 0 means now.
    // `lockFlag`: whether to take the lock between processes; if not, the caller holds that lock, or is the only
    // writer. Always true: a line that cannot be written is lost silently. Throws nothing; a message that exceeds the
    // maximum size of a string ends the process.
    virtual bool Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                     wchar_t const* category, char const* detail, char const* origin, char const* format,
                     va_list arguments, std::uint64_t time, bool lockFlag) noexcept = 0;
    virtual bool Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                     wchar_t const* category, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                     va_list arguments, std::uint64_t time, bool lockFlag) noexcept = 0;

    // Writes a header, one line for each of its parts. Null: the stored header. With `merge` set: the stored header,
    // after merging `header` into it. Otherwise: `header` alone.
    virtual void LogHeader(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                           wchar_t const* category, LogHeaderText const* header, bool lockFlag) = 0;

    // Sets the threshold from the marker files in the temporary folder.
    void ChooseLevel();

    // Counts one registration.
    void AddReference() noexcept;

    std::wstring group;
    std::wstring separator = L" | ";
    std::wstring fileName = L"ZANT.log"; // without folder
    std::wstring filePath;               // empty until set
    LogLevel threshold = LogLevel::Info; // lines below it are dropped
    UniqueHandle file;                   // null while closed
    bool enabled = true;                 // a disabled target refuses Open
    bool isOpen = false;
    std::uint32_t refCount = 0; // registrations; changed under refLock only
    CRITICAL_SECTION refLock;
    bool wideOutput = true; // UTF-16, little-endian; else UTF-8

  protected:
    LogTargetBase();
};

} // namespace zant
