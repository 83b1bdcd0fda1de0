#pragma once
#include <tuple>
#include <type_traits>

namespace sim
{

// Converts to a field of any type: only for counting the fields.
struct AnyField
{
    template <typename Field>
    operator Field() const;
};

// The number of fields of a struct: of the values that it can be initialised with.
template <typename Struct, typename... Fields>
consteval std::size_t FieldCount()
{
    if constexpr (requires { Struct{Fields{}..., AnyField{}}; })
    {
        return FieldCount<Struct, Fields..., AnyField>();
    }
    else
    {
        return sizeof...(Fields);
    }
}

// The fields of a struct without base classes, in their order, as a tuple of references.
template <typename Struct>
constexpr auto FieldsOf(Struct& value)
{
    constexpr auto count = FieldCount<std::remove_const_t<Struct>>();
    static_assert(count <= 6, "a message with more fields needs another case");
    if constexpr (count == 0)
    {
        return std::tuple<>();
    }
    else if constexpr (count == 1)
    {
        auto& [a] = value;
        return std::tie(a);
    }
    else if constexpr (count == 2)
    {
        auto& [a, b] = value;
        return std::tie(a, b);
    }
    else if constexpr (count == 3)
    {
        auto& [a, b, c] = value;
        return std::tie(a, b, c);
    }
    else if constexpr (count == 4)
    {
        auto& [a, b, c, d] = value;
        return std::tie(a, b, c, d);
    }
    else if constexpr (count == 5)
    {
        auto& [a, b, c, d, e] = value;
        return std::tie(a, b, c, d, e);
    }
    else
    {
        auto& [a, b, c, d, e, f] = value;
        return std::tie(a, b, c, d, e, f);
    }
}

} // namespace sim
