#include "doctor/base/SystemText.h"

#include "doctor/base/Error.h"
#include "utils/Utf8.h"

#include <windows.h>

namespace doctor
{

std::string SystemText(unsigned long code)
{
    constexpr DWORD most = 1024;
    wchar_t text[most];
    auto const length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                       text, most, nullptr);
    std::wstring_view const message(text, length);
    auto const words = zant::ToUtf8(message.substr(0, message.find_last_not_of(L". \r\n") + 1)).value_or("");
    return (words.empty() ? "unknown error" : words) + " (" + std::to_string(code) + ")";
}

std::string FailureText(std::filesystem::path const& path, unsigned long code)
{
    return PathText(path) + ": " + SystemText(code);
}

void ThrowLastError(std::filesystem::path const& path)
{
    throw Error(FailureText(path, GetLastError()));
}

std::string PathText(std::filesystem::path const& path)
{
    return zant::ToUtf8(path.native()).value_or("(a path that is no text)");
}

} // namespace doctor
