#pragma once
#include "utils/UtilsLog.h"

#include <cstdarg>
#include <cwchar>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace test
{

// Receives the utilities' lines through the hook while it exists.
class RecordingHook
{
  public:
    // level, component, category, ignored, location, message
    using Line = std::tuple<std::uint32_t, std::wstring, std::wstring, std::wstring, std::wstring, std::wstring>;

    RecordingHook()
    {
        s_lines.clear();
        zant::g_utilsLogHook = Write;
    }

    RecordingHook(RecordingHook const&) = delete;
    RecordingHook& operator=(RecordingHook const&) = delete;

    ~RecordingHook() { zant::g_utilsLogHook = nullptr; }

    // Call when no thread logs any more.
    std::vector<Line> const& Lines() const { return s_lines; }

  private:
    static std::int32_t Write(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                              wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        wchar_t message[1024] = {};
        _vsnwprintf(message, std::size(message) - 1, format, arguments);
        va_end(arguments);
        std::lock_guard const lock(s_mutex);
        s_lines.emplace_back(level, component, category, ignored, location, message);
        return 0;
    }

    static inline std::mutex s_mutex; // guards the lines
    static inline std::vector<Line> s_lines;
};

} // namespace test
