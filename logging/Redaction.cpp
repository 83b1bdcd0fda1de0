#include "logging/Redaction.h"

#include "logging/ElementPlaces.h"
#include "logging/UnitScan.h"

namespace zant
{

namespace
{

constexpr auto mask = "****"_utf16;
constexpr auto npos = Utf16View::npos;

// Searches for the last code unit of the pattern: in "eyJ" it is by far the rarest.
std::size_t Find(Utf16View text, Utf16View wanted) noexcept
{
    auto const before = wanted.size() - 1;
    auto const last = FindUnit(text, wanted.back(), before,
                               [&](std::size_t place) { return text.substr(place - before, wanted.size()) == wanted; });
    return last != npos ? last - before : npos;
}

} // namespace

std::vector<Utf16String> CredentialKeys()
{
    constexpr Utf16View keys[] = {
        "proxyusername"_utf16,  "proxy-user"_utf16,    "proxyuser"_utf16, "user"_utf16,      "username"_utf16,
        "proxy-password"_utf16, "proxypassword"_utf16, "password"_utf16,  "proxypass"_utf16,
    };
    return {std::begin(keys), std::end(keys)};
}

bool ContainsToken(Utf16View message) noexcept
{
    auto const header = Find(message, "eyJ"_utf16);
    return header != npos && Find(message.substr(header), ".eyJ"_utf16) != npos;
}

void MaskCredentials(std::vector<Utf16String> const& maskedKeys, Utf16View message, Utf16String& output)
{
    ElementPlaces elements(maskedKeys, message);
    for (std::size_t key = 0; key < maskedKeys.size(); ++key)
    {
        auto const [open, close] = elements[key];
        auto const openLength = maskedKeys[key].size() + 2;
        if (open == npos || close == npos || close == open + openLength)
        {
            continue;
        }
        MaskRange(output, open, openLength, close);
        elements.Follow(key, output, open + openLength, close, open + openLength + mask.size());
    }
}

void MaskRange(Utf16String& text, std::size_t openStart, std::size_t openLength, std::size_t closeStart)
{
    auto const openEnd = openStart + openLength;
    if (closeStart < openEnd)
    {
        auto const repeated = text.substr(closeStart, openEnd - closeStart);
        text.insert(openEnd, repeated).insert(openEnd, mask);
        return;
    }
    text.replace(openEnd, closeStart - openEnd, mask);
}

Utf16View Redact(Utf16View message, Utf16String& changed, LogLevel& printedLevel,
                 std::vector<Utf16String> const& maskedKeys)
{
    if (ContainsToken(message))
    {
        printedLevel = LogLevel::Warn;
        return "Found access/device token. Log skipped."_utf16;
    }
    if (FindUnit(message, '<', 0, [](std::size_t) { return true; }) == npos)
    {
        return message; // no element: nothing to mask, no copy needed
    }
    changed = message;
    MaskCredentials(maskedKeys, message, changed);
    return changed;
}

} // namespace zant
