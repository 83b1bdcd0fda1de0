// winrt::guid: an interface or object id with the layout of the system's GUID, usable in constant expressions.
#pragma once
#include "winrt/base/imports.h"

// Code that includes <unknwn.h> first uses classic COM, too: winrt::guid converts to GUID and back, and interfaces that
// derive from ::IUnknown have their id. Without it they are unknown here.
#ifdef __IUnknown_INTERFACE_DEFINED__
#define WINRT_IMPL_CLASSIC_COM
#endif

namespace winrt
{

namespace impl
{

constexpr uint8_t hex_digit(uint32_t character)
{
    if (character >= '0' && character <= '9')
    {
        return static_cast<uint8_t>(character - '0');
    }
    if (character >= 'A' && character <= 'F')
    {
        return static_cast<uint8_t>(character - 'A' + 10);
    }
    if (character >= 'a' && character <= 'f')
    {
        return static_cast<uint8_t>(character - 'a' + 10);
    }
    throw std::invalid_argument("not a hexadecimal digit");
}

// The bytes in the order of the text.
template <typename Character>
constexpr std::array<uint8_t, 16> guid_bytes(std::basic_string_view<Character> text)
{
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
    {
        throw std::invalid_argument("not a guid");
    }
    // Where each byte's two digits stand.
    constexpr uint8_t positions[16] = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
    std::array<uint8_t, 16> bytes{};
    for (size_t i = 0; i < 16; ++i)
    {
        auto const high = hex_digit(static_cast<uint32_t>(text[positions[i]]));
        auto const low = hex_digit(static_cast<uint32_t>(text[positions[i] + 1u]));
        bytes[i] = static_cast<uint8_t>(high << 4 | low);
    }
    return bytes;
}

} // namespace impl

struct guid
{
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];

    guid() noexcept = default;

    constexpr guid(uint32_t data1, uint16_t data2, uint16_t data3, std::array<uint8_t, 8> const& data4) noexcept
        : Data1(data1), Data2(data2), Data3(data3),
          Data4{data4[0], data4[1], data4[2], data4[3], data4[4], data4[5], data4[6], data4[7]}
    {
    }

#ifdef WINRT_IMPL_CLASSIC_COM
    constexpr guid(GUID const& value) noexcept
        : Data1(static_cast<uint32_t>(value.Data1)), Data2(value.Data2), Data3(value.Data3),
          Data4{value.Data4[0], value.Data4[1], value.Data4[2], value.Data4[3],
                value.Data4[4], value.Data4[5], value.Data4[6], value.Data4[7]}
    {
    }

    operator GUID const&() const noexcept { return reinterpret_cast<GUID const&>(*this); }
#endif

    // 36 characters, dashes in their places, no braces. Throws std::invalid_argument for anything else.
    explicit constexpr guid(std::string_view text) : guid(impl::guid_bytes(text)) {}
    explicit constexpr guid(std::wstring_view text) : guid(impl::guid_bytes(text)) {}

    explicit constexpr guid(std::array<uint8_t, 16> const& bytes) noexcept
        : Data1(static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
                static_cast<uint32_t>(bytes[2]) << 8 | bytes[3]),
          Data2(static_cast<uint16_t>(bytes[4] << 8 | bytes[5])),
          Data3(static_cast<uint16_t>(bytes[6] << 8 | bytes[7])),
          Data4{bytes[8], bytes[9], bytes[10], bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]}
    {
    }

    friend constexpr bool operator==(guid const& left, guid const& right) noexcept { return (left <=> right) == 0; }

    friend constexpr std::strong_ordering operator<=>(guid const& left, guid const& right) noexcept = default;
};

static_assert(sizeof(guid) == 16 && std::is_trivially_copyable_v<guid>);

} // namespace winrt

template <>
struct std::hash<winrt::guid>
{
    size_t operator()(winrt::guid const& value) const noexcept
    {
        uint64_t halves[2];
        std::memcpy(halves, &value, sizeof halves);
        return static_cast<size_t>(halves[0] ^ halves[1]);
    }
};
