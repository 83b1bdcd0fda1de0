#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <string>
#include <tuple>

namespace sim
{

// A property, by its name in the metadata.
template <winrt::impl::member_name Name, typename T>
struct Property
{
    static constexpr auto name = Name;
    using Type = T;
};

template <typename... I>
struct Interfaces
{
};

// A class D whose objects hold the values of read-only properties. A fault can be injected into each getter. D may
// declare other members.
template <typename D, typename Class, typename List, typename... Properties>
struct RecordOf;

template <typename D, typename Class, typename... I, typename... Properties>
struct RecordOf<D, Class, Interfaces<I...>, Properties...> : Implements<D, I...>
{
    using class_type = Class;

    // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): as winrt::implements
    explicit RecordOf(typename Properties::Type... values) : m_values(std::move(values)...) {}

    template <winrt::impl::member_name Name>
    auto Member(auto const&...) const
    {
        constexpr bool isThis[] = {Properties::name == Name..., false};
        constexpr auto position = static_cast<std::size_t>(std::ranges::find(isThis, true) - isThis);
        if constexpr (position >= sizeof...(Properties))
        {
            return NotImplemented();
        }
        else
        {
            return ValueOf(Name.text, std::get<position>(m_values));
        }
    }

  private:
    template <typename T>
    static T ValueOf(std::string_view property, T const& value)
    {
        auto const isNull = InjectFault(CallOf<Class>(std::wstring(property.begin(), property.end())));
        if constexpr (std::is_base_of_v<Foundation::IUnknown, T>)
        {
            return isNull ? T(nullptr) : value;
        }
        else
        {
            return value;
        }
    }

    std::tuple<typename Properties::Type...> m_values;
};

// One without other members.
template <typename Class, typename List, typename... Properties>
struct Record : RecordOf<Record<Class, List, Properties...>, Class, List, Properties...>
{
    using RecordOf<Record, Class, List, Properties...>::RecordOf;
};

} // namespace sim
