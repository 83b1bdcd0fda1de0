#include "simulator/protocol/SetText.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <cstring>

namespace sim
{

namespace
{

// What stands before the separator, which goes with it.
std::wstring_view TakeUntil(std::wstring_view& text, wchar_t separator)
{
    auto const length = text.find(separator);
    if (length == std::wstring_view::npos)
    {
        throw Error(L"a set of values ends in the middle");
    }
    auto const taken = text.substr(0, length);
    text.remove_prefix(length + 1);
    return taken;
}

} // namespace

void AppendText(std::wstring& list, std::wstring_view text)
{
    list += std::to_wstring(text.size());
    list += L':';
    list += text;
}

std::wstring_view TakeText(std::wstring_view& list)
{
    auto const length = ParseNumber(TakeUntil(list, L':'));
    if (!length || *length > list.size())
    {
        throw Error(L"a set of values has a wrong length in it");
    }
    auto const text = list.substr(0, *length);
    list.remove_prefix(*length);
    return text;
}

std::wstring PackBytes(std::string_view bytes)
{
    auto text = std::to_wstring(bytes.size()) + L':';
    auto const start = text.size();
    text.resize(start + (bytes.size() + 1) / sizeof(wchar_t));
    std::memcpy(text.data() + start, bytes.data(), bytes.size());
    return text;
}

std::string UnpackBytes(std::wstring_view text)
{
    auto const size = ParseNumber(TakeUntil(text, L':'));
    if (!size || (*size + 1) / sizeof(wchar_t) != text.size())
    {
        throw Error(L"a value has another number of bytes than it says");
    }
    std::string bytes(*size, '\0');
    std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

std::wstring ReadableValue(SetEntry const& entry)
{
    if (!entry.type.ends_with(L"[]") || entry.type == L"String[]")
    {
        return std::wstring(entry.value);
    }
    std::wstring text;
    for (auto const byte : UnpackBytes(entry.value))
    {
        text += L"0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        text += L"0123456789ABCDEF"[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

void AppendEntry(std::wstring& set, SetEntry const& entry)
{
    AppendText(set, entry.name);
    set += L' ';
    set += entry.type;
    set += L' ';
    AppendText(set, entry.value);
}

std::vector<SetEntry> ParseSet(std::wstring_view set)
{
    std::vector<SetEntry> entries;
    while (!set.empty())
    {
        SetEntry entry;
        entry.name = TakeText(set);
        if (!TakeUntil(set, L' ').empty())
        {
            throw Error(L"a set of values has a wrong length in it");
        }
        entry.type = TakeUntil(set, L' ');
        entry.value = TakeText(set);
        entries.push_back(entry);
    }
    return entries;
}

} // namespace sim
