#pragma once
#include "logging/LocalTime.h"
#include "logging/LogTargetBase.h"
#include "logging/Redaction.h"
#include "utils/NamedMutex.h"

#include <atomic>
#include <memory>
#include <vector>

namespace zant
{

// The target that writes to a text file which several processes may share. They meet at a mutex named as the file: each
// line waits for it, and under it the file is also looked after: rotated when it has grown too large, old copies
// deleted. A process that cannot have the mutex in time writes no further line at all, for good: losing lines is
// better than holding up what the app does.
//
// Log may be called from any thread; the mutex serialises the lines. Everything else is for start-up, one thread.
// Failures are told by the results alone. Memory running out loses the line at hand in Log and is thrown as
// std::bad_alloc by the other operations.
class LogTargetDefault : public LogTargetBase
{
  public:
    // Chooses the level and opens nothing.
    LogTargetDefault();
    LogTargetDefault(LogTargetDefault const&) = delete;
    LogTargetDefault& operator=(LogTargetDefault const&) = delete;

    // Also moves an existing file of another encoding to a dated name first, where that can be done.
    bool OpenFile(UniqueHandle& handle) override;
    ~LogTargetDefault() override;
    bool Open() override;
    bool Close() override;
    bool Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
             wchar_t const* category, char const* detail, char const* origin, char const* format, va_list arguments,
             std::uint64_t time, bool lockFlag) noexcept override;
    bool Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
             wchar_t const* category, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
             va_list arguments, std::uint64_t time, bool lockFlag) noexcept override;
    void LogHeader(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                   wchar_t const* category, LogHeaderText const* header, bool lockFlag) override;

    // Appends the text and a line end; false when the last write failed.
    virtual bool WriteRaw(char const* text) noexcept;
    virtual bool WriteRaw(wchar_t const* text) noexcept;

    std::unique_ptr<NamedMutex> lock; // null until Open
    LogHeaderText storedHeader;
    bool headerPending = false;       // the file was rotated, its header is not written yet
    std::atomic<bool> useLock = true; // cleared for good when the mutex cannot be had
    std::wstring setAsidePath;        // where the last file of another encoding went
    std::int64_t lastCheck = 0;       // of the file's size; seconds since 1970, 0 when the next line checks it
    std::int64_t lastLine = 0;        // composed; seconds since 1970
    std::vector<std::wstring> maskedKeys = CredentialKeys();

  private:
    struct Call;

    template <typename Char>
    void LogLine(Call const& call, Char const* detail, Char const* origin, Char const* format, va_list arguments);
    template <typename Char>
    void WriteLine(Call const& call, Char const* detail, Char const* origin, Char const* format, va_list arguments);
    void Compose(Call const& call, std::wstring_view detail, std::wstring_view origin, std::wstring_view message);
    bool CheckSizeAtOpening();
    void CompleteLastLine();
    void CheckSizeWhenDue();
    bool CheckSize();
    bool Rotate(bool keepsCopies);

    // Kept from line to line: the time for its text, the others for their memory.
    SecondText m_second;
    std::wstring m_message;
    std::wstring m_redacted;
    std::wstring m_line;
};

// The target that start-up configures and registers, null until it has made it; never destroyed.
inline LogTargetDefault* g_defaultLogTarget = nullptr;

} // namespace zant
