// Names and ids: those of parameterised types are computed from their signature, in constant expressions.
#pragma once
#include "winrt/base/sha1.h"
#include "winrt/base/traits.h"

namespace winrt::impl
{

template <typename Character, size_t Size>
struct fixed_text
{
    // One more than counts: a class name goes to the system by reference, as a string that ends with a zero.
    std::array<Character, Size + 1> characters{};

    constexpr fixed_text() noexcept = default;
    constexpr explicit fixed_text(std::basic_string_view<Character> text) noexcept
    {
        for (size_t i = 0; i < Size; ++i)
        {
            characters[i] = text[i];
        }
    }
    constexpr operator std::basic_string_view<Character>() const noexcept { return {characters.data(), Size}; }
};

template <size_t Size>
consteval auto literal(char const (&text)[Size]) noexcept
{
    return fixed_text<char, Size - 1>(std::string_view(text, Size - 1));
}

template <size_t Size>
consteval auto literal(wchar_t const (&text)[Size]) noexcept
{
    return fixed_text<wchar_t, Size - 1>(std::wstring_view(text, Size - 1));
}

template <typename Character, size_t Left, size_t Right>
constexpr auto operator+(fixed_text<Character, Left> const& left, fixed_text<Character, Right> const& right) noexcept
{
    fixed_text<Character, Left + Right> result;
    for (size_t i = 0; i < Left; ++i)
    {
        result.characters[i] = left.characters[i];
    }
    for (size_t i = 0; i < Right; ++i)
    {
        result.characters[Left + i] = right.characters[i];
    }
    return result;
}

// "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}" in small letters, as it stands in signatures.
constexpr fixed_text<char, 38> guid_text(guid const& value) noexcept
{
    fixed_text<char, 38> result;
    size_t at = 0;
    auto const put_byte = [&](uint32_t byte) {
        result.characters[at++] = "0123456789abcdef"[byte >> 4 & 15];
        result.characters[at++] = "0123456789abcdef"[byte & 15];
    };
    result.characters[at++] = '{';
    for (int shift = 24; shift >= 0; shift -= 8)
    {
        put_byte(value.Data1 >> shift);
    }
    for (auto const half : {value.Data2, value.Data3})
    {
        result.characters[at++] = '-';
        put_byte(static_cast<uint32_t>(half) >> 8);
        put_byte(half);
    }
    for (size_t i = 0; i < 8; ++i)
    {
        if (i == 0 || i == 2)
        {
            result.characters[at++] = '-';
        }
        put_byte(value.Data4[i]);
    }
    result.characters[at] = '}';
    return result;
}

template <typename T>
consteval auto narrow_name() noexcept
{
    fixed_text<char, name_v<T>.size()> result;
    for (size_t i = 0; i < name_v<T>.size(); ++i)
    {
        result.characters[i] = static_cast<char>(name_v<T>[i]);
    }
    return result;
}

// The letters that stand for a basic type; specialised beside each of them.
template <typename T>
inline constexpr auto basic_signature_v = literal("");

template <typename T, typename Category = category_t<T>>
struct signature
{
    static_assert(!std::is_void_v<Category>, "T is no Windows Runtime type, or its header is missing");
};

template <typename T>
inline constexpr auto signature_v = signature<T>::value;

template <typename First, typename... Rest>
consteval auto joined_signatures() noexcept
{
    if constexpr (sizeof...(Rest) == 0)
    {
        return signature_v<First>;
    }
    else
    {
        return signature_v<First> + literal(";") + joined_signatures<Rest...>();
    }
}

template <typename T>
struct signature<T, basic_category>
{
    static constexpr auto value = basic_signature_v<T>;
};

template <typename T>
struct signature<T, interface_category>
{
    static constexpr auto value = guid_text(guid_v<T>);
};

template <typename T>
struct signature<T, delegate_category>
{
    static constexpr auto value = literal("delegate(") + guid_text(guid_v<T>) + literal(")");
};

template <typename T>
struct signature<T, enum_category>
{
    static constexpr auto value = literal("enum(") + narrow_name<T>() + literal(";") +
                                  basic_signature_v<std::underlying_type_t<T>> + literal(")");
};

template <typename T>
struct signature<T, class_category>
{
    static constexpr auto value = literal("rc(") + narrow_name<T>() + literal(";") +
                                  signature_v<typename default_interface_of<T>::type> + literal(")");
};

template <typename T, typename... Fields>
struct signature<T, struct_category<Fields...>>
{
    static constexpr auto value =
        literal("struct(") + narrow_name<T>() + literal(";") + joined_signatures<Fields...>() + literal(")");
};

template <typename T, typename... Arguments>
struct signature<T, pinterface_category<Arguments...>>
{
    static constexpr auto value =
        literal("pinterface(") + guid_text(guid_v<T>) + literal(";") + joined_signatures<Arguments...>() + literal(")");
};

template <size_t Size>
constexpr guid name_based_guid(fixed_text<char, Size> const& name) noexcept
{
    // The name space of parameterised types: 11F47AD5-7B73-42C0-ABAE-878B1E16ADEE.
    std::array<uint8_t, 16 + Size> message = {0x11, 0xF4, 0x7A, 0xD5, 0x7B, 0x73, 0x42, 0xC0,
                                              0xAB, 0xAE, 0x87, 0x8B, 0x1E, 0x16, 0xAD, 0xEE};
    for (size_t i = 0; i < Size; ++i)
    {
        message[16 + i] = static_cast<uint8_t>(name.characters[i]);
    }
    auto const digest = sha1(message);
    std::array<uint8_t, 16> bytes{};
    for (size_t i = 0; i < 16; ++i)
    {
        bytes[i] = static_cast<uint8_t>(digest[i / 4] >> (24 - 8 * (i % 4)));
    }
    bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x50); // version 5: name-based with SHA-1
    bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80); // the variant of RFC 4122
    return guid(bytes);
}

template <typename T>
struct is_pinterface : std::false_type
{
};
template <typename... Arguments>
struct is_pinterface<pinterface_category<Arguments...>> : std::true_type
{
};

template <typename T>
inline constexpr guid computed_guid_v = name_based_guid(signature_v<T>);

template <typename T>
constexpr guid const& guid_of() noexcept
{
    if constexpr (requires { typename T::implements_type; }) // an implementation stands for its first interface
    {
        return guid_of<typename T::implements_type::first_interface>();
    }
    else if constexpr (is_pinterface<category_t<T>>::value)
    {
        return computed_guid_v<T>;
    }
    else if constexpr (std::is_same_v<category_t<T>, class_category>)
    {
        return guid_of<typename default_interface_of<T>::type>();
    }
    else if constexpr (std::is_void_v<category_t<T>>)
    {
#ifdef WINRT_IMPL_CLASSIC_COM
        return reinterpret_cast<guid const&>(__mingw_uuidof<T>());
#else
        static_assert(!std::is_void_v<category_t<T>>, "not an interface of the Windows Runtime; for one of classic COM "
                                                      "include <unknwn.h> before any header of the projection");
#endif
    }
    else
    {
        static_assert(guid_v<T> != guid{}, "a type that is no interface, class or delegate has no id");
        return guid_v<T>;
    }
}

// Names with their arguments: "Windows.Foundation.IReference`1<Int32>".
template <typename T, typename Category = category_t<T>>
struct full_name
{
    static constexpr auto value = fixed_text<wchar_t, name_v<T>.size()>(name_v<T>);
};

template <typename First, typename... Rest>
consteval auto joined_names() noexcept
{
    if constexpr (sizeof...(Rest) == 0)
    {
        return full_name<First>::value;
    }
    else
    {
        return full_name<First>::value + literal(L", ") + joined_names<Rest...>();
    }
}

template <typename T, typename... Arguments>
struct full_name<T, pinterface_category<Arguments...>>
{
    static constexpr auto value =
        fixed_text<wchar_t, name_v<T>.size()>(name_v<T>) + literal(L"<") + joined_names<Arguments...>() + literal(L">");
};

} // namespace winrt::impl

namespace winrt
{

// Of an interface its id, of a class its default interface's, of an implementation its first interface's.
template <typename T>
constexpr guid const& guid_of() noexcept
{
    return impl::guid_of<T>();
}

template <typename T>
bool is_guid_of(guid const& id) noexcept
{
    return guid_of<T>() == id;
}

template <typename T>
constexpr std::wstring_view name_of() noexcept
{
    return impl::full_name<T>::value;
}

} // namespace winrt
