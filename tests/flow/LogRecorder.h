#pragma once
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <source_location>
#include <string>
#include <vector>

namespace test
{

// While it lives, it stands between the application's log sites and the log: each line goes on to AppLog, and is kept
// here once it has been written, for tests to wait for. There may be one at a time.
class LogRecorder
{
  public:
    // Of the application's log function, which must be set already. count: what is noted with each line.
    explicit LogRecorder(std::function<unsigned()> count);
    LogRecorder(LogRecorder const&) = delete;
    LogRecorder& operator=(LogRecorder const&) = delete;
    ~LogRecorder();

    // All lines so far: "[LEVEL] category message".
    std::vector<std::wstring> Lines() const;

    // The same once there are so many. Throws std::runtime_error when they do not come.
    std::vector<std::wstring> WaitForLines(std::size_t count) const;

    // The same once there are so many, or the time for it is over, for a caller that shows what is missing.
    std::vector<std::wstring> TryWaitForLines(std::size_t count) const;

    // Waits for a line with this message, and gives what was counted when it was about to be written. A line that does
    // not come fails the test, at the place of the call.
    unsigned WaitForMessage(std::wstring const& message,
                            std::source_location where = std::source_location::current()) const;

    // Waits for a line with this message, and gives the thread that wrote it.
    std::uint32_t WaitForThreadOf(std::wstring const& message,
                                  std::source_location where = std::source_location::current()) const;

    // The thread that writes the next line with this message does that, once, before it goes on.
    void After(std::wstring message, std::function<void()> action);

  private:
    static std::int32_t Write(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                              wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...);

    struct Line
    {
        std::wstring text;
        unsigned count;
        std::uint32_t thread;
    };

    std::vector<std::wstring> Texts() const; // with the lock held
    Line WaitFor(std::wstring const& message, std::source_location where) const;
    void Add(Line line);
    std::function<void()> TakeAction(std::wstring const& message);

    static inline LogRecorder* s_current = nullptr;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::function<unsigned()> m_count;
    std::vector<Line> m_lines;
    std::map<std::wstring, std::function<void()>> m_actions; // by message
};

// How WaitForLines shows a line of the app service.
std::wstring Info(std::wstring const& message);
std::wstring Error(std::wstring const& message);

} // namespace test
