#pragma once
#include "logging/Utf16.h"
#include "utils/LogLevel.h"

#include <vector>

namespace test
{

using zant::operator""_utf16;

// What becomes of a message, worked out by the rules one after the other, with whole copies and whole searches.
struct Redacted
{
    zant::Utf16String message;
    zant::LogLevel printedLevel;

    bool operator==(Redacted const&) const = default;
};

inline zant::Utf16String LoweredCopy(zant::Utf16String text)
{
    for (auto& unit : text)
    {
        if (unit >= 'A' && unit <= 'Z')
        {
            unit = static_cast<zant::Utf16Unit>(unit - 'A' + 'a');
        }
    }
    return text;
}

inline zant::Utf16String WithMask(zant::Utf16String const& text, std::size_t openEnd, std::size_t closeStart)
{
    auto masked = text.substr(0, openEnd);
    masked += "****"_utf16;
    masked += text.substr(closeStart);
    return masked;
}

inline Redacted RedactedByTheRules(zant::Utf16String const& message, zant::LogLevel level,
                                   std::vector<zant::Utf16String> const& keys)
{
    auto const header = message.find("eyJ"_utf16);
    if (header != message.npos && message.find(".eyJ"_utf16, header) != message.npos)
    {
        return {zant::Utf16String("Found access/device token. Log skipped."_utf16), zant::LogLevel::Warn};
    }
    auto output = message;
    auto lowered = LoweredCopy(message);
    for (auto const& key : keys)
    {
        auto const opening = zant::Utf16String("<"_utf16) + key + zant::Utf16String(">"_utf16);
        auto const closing = zant::Utf16String("</"_utf16) + key + zant::Utf16String(">"_utf16);
        auto const open = lowered.find(opening);
        auto const close = lowered.find(closing);
        if (open == lowered.npos || close == lowered.npos || close == open + opening.size())
        {
            continue;
        }
        output = WithMask(output, open + opening.size(), close);
        lowered = WithMask(lowered, open + opening.size(), close);
    }
    return {output, level};
}

} // namespace test
