// The binary interfaces that every object shares, and those of the system that the base itself needs.
#pragma once
#include "winrt/base/signature.h"

namespace winrt::impl
{

// No virtual destructors here or in any generated layout: each would take slots.
struct unknown_abi
{
    virtual int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept = 0;
    virtual uint32_t __stdcall AddRef() noexcept = 0;
    virtual uint32_t __stdcall Release() noexcept = 0;
};

struct inspectable_abi : unknown_abi
{
    virtual int32_t __stdcall GetIids(uint32_t* count, guid** ids) noexcept = 0;
    virtual int32_t __stdcall GetRuntimeClassName(void** name) noexcept = 0;
    virtual int32_t __stdcall GetTrustLevel(int32_t* level) noexcept = 0;
};

struct IAgileObject : unknown_abi
{
};

struct IWeakReference : unknown_abi
{
    virtual int32_t __stdcall Resolve(guid const& id, void** object) noexcept = 0;
};

struct IWeakReferenceSource : unknown_abi
{
    virtual int32_t __stdcall GetWeakReference(IWeakReference** reference) noexcept = 0;
};

struct IAgileReference : unknown_abi
{
    virtual int32_t __stdcall Resolve(guid const& id, void** object) noexcept = 0;
};

// How an aggregated object's own references are counted and its own interfaces asked for.
struct INonDelegatingInspectable : inspectable_abi
{
};

template <>
struct category<IAgileObject>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<IAgileObject>{"94EA2B94-E9CC-49E0-C0FF-EE64CA8F5B90"};

template <>
struct category<IWeakReference>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<IWeakReference>{"00000037-0000-0000-C000-000000000046"};

template <>
struct category<IWeakReferenceSource>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<IWeakReferenceSource>{"00000038-0000-0000-C000-000000000046"};

template <>
struct category<IAgileReference>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<IAgileReference>{"C03F6A43-65A4-9818-987E-E0B810D2A6F2"};

template <>
struct abi<Windows::Foundation::IUnknown>
{
    using type = unknown_abi;
};
template <>
struct category<Windows::Foundation::IUnknown>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<Windows::Foundation::IUnknown>{"00000000-0000-0000-C000-000000000046"};
template <>
inline constexpr std::wstring_view name_v<Windows::Foundation::IUnknown>{L"Windows.Foundation.IUnknown"};

template <>
struct abi<Windows::Foundation::IInspectable>
{
    using type = inspectable_abi;
};
template <>
struct category<Windows::Foundation::IInspectable>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<Windows::Foundation::IInspectable>{"AF86E2E0-B12D-4C6A-9C5A-D7AA65101E90"};
template <>
inline constexpr std::wstring_view name_v<Windows::Foundation::IInspectable>{L"Object"};
template <>
struct signature<Windows::Foundation::IInspectable, interface_category>
{
    static constexpr auto value = literal("cinterface(IInspectable)");
};

template <>
struct abi<Windows::Foundation::IActivationFactory>
{
    struct type : inspectable_abi
    {
        virtual int32_t __stdcall ActivateInstance(void** instance) noexcept = 0;
    };
};
template <>
struct category<Windows::Foundation::IActivationFactory>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<Windows::Foundation::IActivationFactory>{"00000035-0000-0000-C000-000000000046"};
template <>
inline constexpr std::wstring_view name_v<Windows::Foundation::IActivationFactory>{
    L"Windows.Foundation.IActivationFactory"};

// Basic types: category, the letters of their signature, their name.
template <typename T>
    requires std::is_arithmetic_v<T> || std::is_same_v<T, guid> || std::is_same_v<T, hstring>
struct category<T>
{
    using type = basic_category;
};

template <>
inline constexpr auto basic_signature_v<bool> = literal("b1");
template <>
inline constexpr auto basic_signature_v<int8_t> = literal("i1");
template <>
inline constexpr auto basic_signature_v<uint8_t> = literal("u1");
template <>
inline constexpr auto basic_signature_v<int16_t> = literal("i2");
template <>
inline constexpr auto basic_signature_v<uint16_t> = literal("u2");
template <>
inline constexpr auto basic_signature_v<int32_t> = literal("i4");
template <>
inline constexpr auto basic_signature_v<uint32_t> = literal("u4");
template <>
inline constexpr auto basic_signature_v<int64_t> = literal("i8");
template <>
inline constexpr auto basic_signature_v<uint64_t> = literal("u8");
template <>
inline constexpr auto basic_signature_v<float> = literal("f4");
template <>
inline constexpr auto basic_signature_v<double> = literal("f8");
template <>
inline constexpr auto basic_signature_v<char16_t> = literal("c2");
template <>
inline constexpr auto basic_signature_v<hstring> = literal("string");
template <>
inline constexpr auto basic_signature_v<guid> = literal("g16");

template <>
inline constexpr std::wstring_view name_v<bool>{L"Boolean"};
template <>
inline constexpr std::wstring_view name_v<int8_t>{L"Int8"};
template <>
inline constexpr std::wstring_view name_v<uint8_t>{L"UInt8"};
template <>
inline constexpr std::wstring_view name_v<int16_t>{L"Int16"};
template <>
inline constexpr std::wstring_view name_v<uint16_t>{L"UInt16"};
template <>
inline constexpr std::wstring_view name_v<int32_t>{L"Int32"};
template <>
inline constexpr std::wstring_view name_v<uint32_t>{L"UInt32"};
template <>
inline constexpr std::wstring_view name_v<int64_t>{L"Int64"};
template <>
inline constexpr std::wstring_view name_v<uint64_t>{L"UInt64"};
template <>
inline constexpr std::wstring_view name_v<float>{L"Single"};
template <>
inline constexpr std::wstring_view name_v<double>{L"Double"};
template <>
inline constexpr std::wstring_view name_v<char16_t>{L"Char16"};
template <>
inline constexpr std::wstring_view name_v<hstring>{L"String"};
template <>
inline constexpr std::wstring_view name_v<guid>{L"Guid"};

} // namespace winrt::impl
