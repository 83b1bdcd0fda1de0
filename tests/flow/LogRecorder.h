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

// Records the application's log lines while it exists: each line is passed on to AppLog and, once written, kept for
// tests to wait for. At most one exists at a time.
class LogRecorder
{
  public:
    // Replaces the application's log function, which must be set. count: a number to keep with each line.
    explicit LogRecorder(std::function<unsigned()> count);
    LogRecorder(LogRecorder const&) = delete;
    LogRecorder& operator=(LogRecorder const&) = delete;
    ~LogRecorder();

    // All lines so far, as "[LEVEL] category message".
    std::vector<std::wstring> Lines() const;

    // Waits for that many lines; returns all lines so far. Throws std::runtime_error at the time limit.
    std::vector<std::wstring> WaitForLines(std::size_t count) const;

    // The same without the exception, for a caller that shows what is missing.
    std::vector<std::wstring> TryWaitForLines(std::size_t count) const;

    // Waits for a line with this message and returns the count from before it was written. At the time limit the test
    // fails at the place of the call.
    unsigned WaitForMessage(std::wstring const& message,
                            std::source_location where = std::source_location::current()) const;

    // Waits for a line with this message and returns the thread that wrote it.
    std::uint32_t WaitForThreadOf(std::wstring const& message,
                                  std::source_location where = std::source_location::current()) const;

    // The thread that writes the next line with this message runs the action once before it continues.
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
