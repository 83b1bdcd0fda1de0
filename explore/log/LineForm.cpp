#include "explore/log/LineForm.h"

#include <algorithm>
#include <windows.h>

namespace explore
{

namespace
{

constexpr std::wstring_view noTime = L"00/00/00 00:00:00";

std::wstring Form(std::wstring const& origin, std::wstring const& message)
{
    return std::wstring(noTime) + L":000 | [INFO] |  | ZEB | ZEB |  |  | " + origin + L" | " +
           std::to_wstring(GetCurrentThreadId()) + L" | " + message;
}

} // namespace

std::wstring FormOf(std::wstring const& message)
{
    return Form(L"ZEB", message);
}

std::wstring FormOfHeader()
{
    return Form(L"", L"header");
}

std::wstring WithoutTime(std::wstring line)
{
    auto const end = line.begin() + static_cast<std::ptrdiff_t>(std::min(line.size(), noTime.size()));
    std::replace_if(line.begin(), end, [](wchar_t character) { return character >= L'0' && character <= L'9'; }, L'0');
    return line;
}

} // namespace explore
