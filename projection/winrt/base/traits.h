// What the projection knows about a type: how it looks at the binary edge, its category, name and id. The generated
// headers specialise these for the metadata's types.
#pragma once
#include "winrt/base/guid.h"

namespace winrt
{

struct hstring;
struct hresult;
struct event_token;

struct take_ownership_from_abi_t
{
};
inline constexpr take_ownership_from_abi_t take_ownership_from_abi{};

namespace Windows::Foundation
{
struct IUnknown;
struct IInspectable;
struct IActivationFactory;
} // namespace Windows::Foundation

namespace impl
{

struct basic_category;     // numbers, strings, ids
struct interface_category; // an interface that is not generic
struct delegate_category;
struct enum_category;
struct class_category;
template <typename... Fields>
struct struct_category
{
};
template <typename... Arguments>
struct pinterface_category // a generic interface or delegate with its arguments
{
};

// Not specialised: not a Windows Runtime type (an interface of classic COM, an implementation).
template <typename T>
struct category
{
    using type = void;
};

// The interface that stands for a class at the binary edge; of everything else, the type itself. A class that the
// metadata names without describing has none, so that its id cannot be asked for by mistake.
template <typename T>
struct default_interface_of
{
    using type = T;
};

// The full name in the metadata, as returned by GetRuntimeClassName; of generic types without their arguments.
template <typename T>
inline constexpr std::wstring_view name_v{};

// The id given in the metadata; of a generic type, of its definition.
template <typename T>
inline constexpr guid guid_v{};

// The vtable of an interface or a delegate; of a value, its type at the binary edge.
template <typename T>
struct abi
{
    using type = T;
};
template <typename T>
    requires std::is_enum_v<T>
struct abi<T>
{
    using type = std::underlying_type_t<T>;
};

template <typename T>
using category_t = typename category<T>::type;

template <typename T>
struct is_object_category : std::false_type
{
};
template <>
struct is_object_category<interface_category> : std::true_type
{
};
template <>
struct is_object_category<delegate_category> : std::true_type
{
};
template <>
struct is_object_category<class_category> : std::true_type
{
};
template <typename... Arguments>
struct is_object_category<pinterface_category<Arguments...>> : std::true_type
{
};

// Passed as a pointer to an interface.
template <typename T>
inline constexpr bool is_object_v = is_object_category<category_t<T>>::value;

template <typename T>
struct argument
{
    using type = typename abi<T>::type;
};
template <typename T>
    requires is_object_v<T> || std::is_same_v<T, hstring>
struct argument<T>
{
    using type = void*;
};

// How a value of T travels into a call of the binary interface, and how a call gives one back.
template <typename T>
using arg_in = typename argument<T>::type;
template <typename T>
using arg_out = arg_in<T>*;

template <typename D, typename I>
struct consume;
template <typename D, typename I>
struct produce;

// The methods of interface I as members of D, which is I itself, a class or an implementation that has an I.
template <typename I, typename D = I>
using consume_t = consume<D, I>;

} // namespace impl

template <typename T>
using default_interface = typename impl::default_interface_of<T>::type;

} // namespace winrt
