#include "logging/MessageText.h"

#include "logging/Utf8Cut.h"
#include "utils/Utf8.h"
#include "utils/WideScan.h"

#include <cstdio>
#include <cwchar>

namespace zant
{

namespace
{

constexpr std::size_t mostCharacters = 4094; // and a terminator

} // namespace

// In truncating mode the C runtime's bounded formatters terminate their output even on failure. (Without the underscore
// the names are MinGW's replacements, which give %s and %S other meanings.)

std::optional<std::wstring_view> MessageText(wchar_t const* format, va_list arguments, std::wstring& storage)
{
    if (arguments == nullptr)
    {
        return ViewOf(format);
    }
    // A format without a percent sign that needs no cut is its own result; that saves the formatter.
    auto const* const end = FindOrEnd(format, L'%');
    if (*end == L'\0' && end - format <= static_cast<std::ptrdiff_t>(mostCharacters))
    {
        return std::wstring_view(format, end);
    }
    storage.resize(mostCharacters);
    _vsnwprintf_s(storage.data(), mostCharacters + 1, _TRUNCATE, format, arguments);
    return ViewOf(storage.c_str());
}

std::optional<std::wstring_view> MessageText(char const* format, va_list arguments, std::wstring& storage)
{
    if (arguments == nullptr)
    {
        auto const* const wide = AsWide(format, storage);
        return wide != nullptr ? std::optional(ViewOf(wide)) : std::nullopt;
    }
    char buffer[mostCharacters + 1];
    auto const isCut = _vsnprintf_s(buffer, sizeof buffer, _TRUNCATE, format, arguments) < 0;
    std::string_view text = buffer;
    if (isCut)
    {
        text = WithoutHalvedCharacter(text);
    }
    auto converted = ToWide(text);
    if (!converted)
    {
        return std::nullopt;
    }
    storage = std::move(*converted);
    return storage;
}

} // namespace zant
