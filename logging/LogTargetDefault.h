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

struct FileState;

// The target that writes to a text file, which several processes may share. Each line waits for the mutex named after
// the file; under the same mutex the file is rotated when it has reached its limit, and old copies are deleted. A
// process whose wait fails or times out writes no further line until it ends: losing lines is better than delaying the
// app.
//
// Log may be called from any thread; the mutex serialises the lines. All other operations are for the start-up thread.
// Failures are reported by the results alone. When memory is exhausted, Log loses its line; the other operations throw
// std::bad_alloc.
class LogTargetDefault : public LogTargetBase
{
  public:
    // Chooses the level and opens nothing.
    LogTargetDefault();
    LogTargetDefault(LogTargetDefault const&) = delete;
    LogTargetDefault& operator=(LogTargetDefault const&) = delete;

    // Also renames an existing file of another encoding to its dated name, if possible.
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
    bool headerPending = false;       // the file was rotated and its header is not yet written
    std::atomic<bool> useLock = true; // cleared for good when a wait for the mutex fails
    std::wstring setAsidePath;        // of the last file of another encoding
    std::int64_t lastCheck = 0;       // of the file's size, in seconds since 1970; 0: the next line checks it
    std::int64_t lastLine = 0;        // composed, in seconds since 1970
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
    bool MendEnd(FileState const& state) noexcept;
    void CheckSizeWhenDue();
    bool CheckSize();
    bool Rotate(bool keepsCopies);

    // Reused from line to line: the time for its cached text, the strings for their memory.
    SecondText m_second;
    std::wstring m_message;
    std::wstring m_redacted;
    std::wstring m_line;
};

// The target that start-up creates, configures and registers. Null before; never destroyed.
inline LogTargetDefault* g_defaultLogTarget = nullptr;

} // namespace zant
