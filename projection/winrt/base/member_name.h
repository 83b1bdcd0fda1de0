// The name of a member as a template argument.
#pragma once
#include <algorithm>
#include <cstddef>

namespace winrt::impl
{

struct member_name
{
    template <std::size_t Size>
    consteval member_name(char const (&name)[Size])
    {
        static_assert(Size <= sizeof text);
        std::copy_n(name, Size, text);
    }

    bool operator==(member_name const&) const = default;

    char text[80]{};
};

} // namespace winrt::impl
