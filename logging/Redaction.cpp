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

// Masks the contents of elements that stand one behind another; false when they do not. Where they are nested, overlap
// or close before they open, what one key's mask takes away or repeats changes what is there for the next key.
bool MaskInOnePass(std::span<ElementContent const> contents, Utf16View message, Utf16String& output)
{
    output.clear();
    std::size_t done = 0;
    for (auto const& [begin, end] : contents)
    {
        if (begin == npos || end == npos)
        {
            continue;
        }
        // An opening tag that ends where the last content does is within it.
        if (begin <= done || end < begin)
        {
            return false;
        }
        if (begin != end)
        {
            output.append(message, done, begin - done).append(mask);
            done = end;
        }
    }
    output.append(message, done);
    return true;
}

// Masks in any order of the elements, at the price of a pass for each key.
void MaskKeyByKey(std::span<Utf16String const> keys, Utf16String& output)
{
    for (auto const& key : keys)
    {
        ElementPlaces const element({&key, 1}, output);
        for (auto const& content : element.Contents())
        {
            if (content.Exists())
            {
                auto const openLength = key.size() + 2;
                MaskRange(output, content.begin - openLength, openLength, content.end);
            }
        }
    }
}

} // namespace

std::vector<Utf16String> CredentialKeys()
{
    constexpr Utf16View keys[] = {
        "proxyusername"_utf16,  "proxy-user"_utf16,    "proxyuser"_utf16, "user"_utf16,      "username"_utf16,
        "proxy-password"_utf16, "proxypassword"_utf16, "password"_utf16,  "proxypass"_utf16,
    };
    static_assert(std::size(keys) <= ElementPlaces::mostKeys);
    return {std::begin(keys), std::end(keys)};
}

bool ContainsToken(Utf16View message) noexcept
{
    auto const header = Find(message, "eyJ"_utf16);
    return header != npos && Find(message.substr(header), ".eyJ"_utf16) != npos;
}

bool MaskCredentials(std::vector<Utf16String> const& maskedKeys, Utf16View message, Utf16String& output)
{
    ElementPlaces const elements(maskedKeys, message);
    if (std::ranges::none_of(elements.Contents(), &ElementContent::Exists))
    {
        return false;
    }
    if (!MaskInOnePass(elements.Contents(), message, output))
    {
        output = message;
        MaskKeyByKey(maskedKeys, output);
    }
    return true;
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
        return message; // no element: nothing to mask
    }
    return MaskCredentials(maskedKeys, message, changed) ? changed : message;
}

} // namespace zant
