#pragma once
#include <string>

namespace test
{

// A line of the app's log as it stands in the file, without its line end.
inline std::wstring LogText(std::wstring const& time, std::wstring const& message, std::wstring const& level = L"INFO",
                            std::wstring const& category = L"ZEBMain", unsigned thread = 7)
{
    return time + L" | [" + level + L"] |  | ZEB | ZEB | " + category + L" |  | ZEB | " + std::to_wstring(thread) +
           L" | " + message;
}

inline std::wstring const mark = L"\xFEFF";

} // namespace test
