// How arguments and results cross the binary edge, in both directions. Used by the generated code.
#pragma once
#include "winrt/base/array.h"

namespace winrt::impl
{

// ---- consuming: our values into a call, its results back

template <typename T>
decltype(auto) bind_in(T const& value) noexcept
{
    if constexpr (requires { get_abi(value); })
    {
        return get_abi(value);
    }
    else if constexpr (std::is_trivially_copyable_v<T>)
    {
        return std::bit_cast<arg_in<T>>(value);
    }
    else
    {
        return reinterpret_cast<arg_in<T> const&>(value); // a structure that holds strings
    }
}

template <typename T>
auto bind_in(array_view<T> const& values) noexcept
{
    using element = std::remove_const_t<T>;
    return reinterpret_cast<arg_in<element>*>(const_cast<element*>(values.data()));
}

template <typename T>
arg_out<T> bind_out(T& value) noexcept
{
    if constexpr (requires { put_abi(value); })
    {
        return put_abi(value);
    }
    else
    {
        return reinterpret_cast<arg_out<T>>(&value);
    }
}

// A structure that holds strings: it owns what is written to its place.
template <typename T>
inline constexpr bool is_owning_struct_v =
    !is_object_v<T> && !std::is_same_v<T, hstring> && !std::is_trivially_copyable_v<T>;

// The place for one result of a call, then its owner.
template <typename T>
struct result_of_call
{
    std::conditional_t<is_owning_struct_v<T>, T, arg_in<T>> value{};

    arg_out<T> put() noexcept { return reinterpret_cast<arg_out<T>>(&value); }
    T take() noexcept
    {
        if constexpr (is_object_v<T> || std::is_same_v<T, hstring>)
        {
            return T{value, take_ownership_from_abi};
        }
        else if constexpr (std::is_trivially_copyable_v<T>)
        {
            return std::bit_cast<T>(value);
        }
        else
        {
            return std::move(value);
        }
    }
};

template <typename T>
struct array_result_of_call
{
    uint32_t size{};
    arg_in<T>* data{};

    com_array<T> take() noexcept { return {data, size, take_ownership_from_abi}; }
};

// ---- producing: the caller's values for our methods, our results for the caller

// Refers to the caller's value without taking a reference of its own.
template <typename T>
decltype(auto) borrow(arg_in<T> const& value) noexcept
{
    if constexpr (std::is_trivially_copyable_v<T>)
    {
        return std::bit_cast<T>(value);
    }
    else
    {
        return reinterpret_cast<T const&>(value);
    }
}

template <typename T>
array_view<T> borrow_array(uint32_t size, arg_in<std::remove_const_t<T>>* data) noexcept
{
    return array_view<T>(reinterpret_cast<T*>(data), size);
}

// What a failing method must leave behind.
template <typename T>
void clear_result(T* place) noexcept
{
    *place = T{};
}

template <typename T>
T& borrow_out(arg_out<T> place) noexcept
{
    *place = arg_in<T>{};
    return reinterpret_cast<T&>(*place);
}

template <typename T>
void return_result(arg_out<T> place, T value) noexcept
{
    if constexpr (is_object_v<T> || std::is_same_v<T, hstring>)
    {
        *place = detach_abi(value);
    }
    else if constexpr (std::is_trivially_copyable_v<T>)
    {
        *place = std::bit_cast<arg_in<T>>(value);
    }
    else
    {
        // The caller's place becomes the owner of what the structure holds.
        new (place) T(std::move(value));
    }
}

template <typename T>
void return_array(uint32_t* size, arg_in<T>** data, com_array<T> values) noexcept
{
    auto const [count, elements] = values.detach();
    *size = count;
    *data = reinterpret_cast<arg_in<T>*>(elements);
}

} // namespace winrt::impl
