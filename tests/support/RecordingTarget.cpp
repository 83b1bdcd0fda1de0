#include "tests/support/RecordingTarget.h"

#include "utils/Utf8.h"

#include <cstdio>

namespace test
{

namespace
{

std::optional<std::wstring> Shown(wchar_t const* text)
{
    return text != nullptr ? std::optional<std::wstring>(text) : std::nullopt;
}

std::optional<std::wstring> Shown(char const* text)
{
    return text != nullptr ? zant::ToWide(text) : std::nullopt;
}

std::wstring Formatted(wchar_t const* format, va_list arguments)
{
    wchar_t text[200] = {};
    _vsnwprintf_s(text, _TRUNCATE, format, arguments);
    return text;
}

std::wstring Formatted(char const* format, va_list arguments)
{
    char text[200] = {};
    _vsnprintf_s(text, _TRUNCATE, format, arguments);
    return zant::ToWide(text).value();
}

} // namespace

RecordingTarget::RecordingTarget(wchar_t const* ownGroup)
{
    group = ownGroup;
}

bool RecordingTarget::OpenFile(zant::UniqueHandle&)
{
    return true;
}

bool RecordingTarget::Open()
{
    return true;
}

bool RecordingTarget::Close()
{
    return true;
}

bool RecordingTarget::Log(zant::LogLevel level, wchar_t const* reserved, wchar_t const* product,
                          wchar_t const* component, wchar_t const* category, char const* detail, char const* origin,
                          char const* format, va_list arguments, std::uint64_t time, bool lockFlag) noexcept
{
    auto const message = arguments != nullptr ? Formatted(format, arguments) : Shown(format).value();
    calls.push_back({false,
                     level,
                     {reserved, product, component, category},
                     Shown(detail),
                     Shown(origin),
                     message,
                     arguments != nullptr,
                     time,
                     lockFlag});
    return result;
}

bool RecordingTarget::Log(zant::LogLevel level, wchar_t const* reserved, wchar_t const* product,
                          wchar_t const* component, wchar_t const* category, wchar_t const* detail,
                          wchar_t const* origin, wchar_t const* format, va_list arguments, std::uint64_t time,
                          bool lockFlag) noexcept
{
    auto const message = arguments != nullptr ? Formatted(format, arguments) : std::wstring(format);
    calls.push_back({true,
                     level,
                     {reserved, product, component, category},
                     Shown(detail),
                     Shown(origin),
                     message,
                     arguments != nullptr,
                     time,
                     lockFlag});
    return result;
}

void RecordingTarget::LogHeader(zant::LogLevel, wchar_t const*, wchar_t const*, wchar_t const*, wchar_t const*,
                                zant::LogHeaderText const*, bool)
{
}

} // namespace test
