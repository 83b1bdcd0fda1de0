#include "simulator/protocol/SetEntry.h"

#include "simulator/base/Text.h"
#include "simulator/protocol/Encoding.h"

namespace sim
{

namespace
{

struct KnownType
{
    std::wstring_view name;
    std::wstring (*integer)(std::string_view bytes) = nullptr; // for integers
};

template <typename Integer>
std::wstring Decimal(std::string_view bytes)
{
    return std::to_wstring(Decode<Integer>(bytes));
}

// By PropertyType.
constexpr KnownType knownTypes[] = {
    {L"Null"},
    {L"UInt8", Decimal<std::uint8_t>},
    {L"Int16", Decimal<std::int16_t>},
    {L"UInt16", Decimal<std::uint16_t>},
    {L"Int32", Decimal<std::int32_t>},
    {L"UInt32", Decimal<std::uint32_t>},
    {L"Int64", Decimal<std::int64_t>},
    {L"UInt64", Decimal<std::uint64_t>},
    {L"Single"},
    {L"Double"},
    {L"Char16", Decimal<char16_t>},
    {L"Boolean", Decimal<bool>},
    {L"String"},
    {L"Inspectable"},
    {L"DateTime"},
    {L"TimeSpan"},
    {L"Guid"},
    {L"Point"},
    {L"Size"},
    {L"Rect"},
    {L"Set"},
};

KnownType const& TypeOf(SetEntry const& entry)
{
    auto const number = static_cast<std::size_t>(entry.type % SetEntry::ofArrays);
    return number < std::size(knownTypes) ? knownTypes[number] : throw Error(L"there is no such type of values");
}

std::wstring Hexadecimal(std::string_view bytes)
{
    std::wstring text;
    for (auto const unit : bytes)
    {
        text += HexDigits(static_cast<unsigned char>(unit), 2);
    }
    return text;
}

} // namespace

std::wstring TypeName(SetEntry const& entry)
{
    return std::wstring(TypeOf(entry).name) + (entry.type >= SetEntry::ofArrays ? L"[]" : L"");
}

std::wstring ReadableValue(SetEntry const& entry)
{
    if (entry.type % SetEntry::ofArrays == SetEntry::ofString)
    {
        return Listed(Decode<std::vector<std::wstring>>(entry.bytes), L", ");
    }
    auto const integer = entry.type < SetEntry::ofArrays ? TypeOf(entry).integer : nullptr;
    return integer ? integer(entry.bytes) : Hexadecimal(entry.bytes);
}

} // namespace sim
