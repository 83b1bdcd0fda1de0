#include "logging/MessageText.h"

#include "logging/Utf8Cut.h"
#include "utils/Utf8.h"

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace zant
{

namespace
{

constexpr std::size_t bufferSize = 4095;

// The runtime's own bounded formatters, in truncating mode: terminated whatever happens. (The names without the
// underscore would be MinGW's replacements, whose %s and %S mean other things.)
void Format(wchar_t (&buffer)[bufferSize], wchar_t const* format, va_list arguments)
{
    _vsnwprintf_s(buffer, bufferSize, _TRUNCATE, format, arguments);
}

void Format(char (&buffer)[bufferSize], char const* format, va_list arguments)
{
    _vsnprintf_s(buffer, bufferSize, _TRUNCATE, format, arguments);
}

// Without a percent sign a format is its own result, which spares the formatter, as long as it need not be cut.
bool StandsAsItIs(std::wstring_view format, va_list arguments)
{
    return arguments == nullptr || (format.size() < bufferSize && format.find(L'%') == format.npos);
}

} // namespace

void FormatInto(std::wstring& message, wchar_t const* format, va_list arguments)
{
    if (StandsAsItIs(format, arguments))
    {
        message = format;
        return;
    }
    wchar_t buffer[bufferSize];
    Format(buffer, format, arguments);
    message = buffer;
}

bool FormatInto(std::wstring& message, char const* format, va_list arguments)
{
    std::string_view text = format;
    char buffer[bufferSize];
    if (arguments != nullptr)
    {
        Format(buffer, format, arguments);
        text = buffer;
        if (text.size() == bufferSize - 1)
        {
            text = WithoutHalvedCharacter(text);
        }
    }
    auto converted = ToWide(text);
    if (!converted)
    {
        return false;
    }
    message = std::move(*converted);
    return true;
}

} // namespace zant
