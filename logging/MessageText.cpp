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

// The runtime's own bounded formatters in truncating mode end their output with a zero whatever happens. (The names
// without the underscore would be MinGW's replacements, whose %s and %S mean other things.)

std::optional<std::wstring_view> MessageText(wchar_t const* format, va_list arguments, std::wstring& storage)
{
    if (arguments == nullptr)
    {
        return ViewOf(format);
    }
    // Without a percent sign a format is its own result, as long as it need not be cut; that spares the formatter.
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
