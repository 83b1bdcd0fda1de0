#pragma once
#include "simulator/runtime/Implements.h"

#include <utility>
#include <windows.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The number of a type's arrays is the type's own and this.
constexpr auto arrayTypes = static_cast<std::int32_t>(Foundation::PropertyType::UInt8Array) -
                            static_cast<std::int32_t>(Foundation::PropertyType::UInt8);

template <typename T>
constexpr Foundation::PropertyType ArrayTypeOf()
{
    if constexpr (std::is_same_v<T, IInspectable>)
    {
        return Foundation::PropertyType::InspectableArray;
    }
    else
    {
        return static_cast<Foundation::PropertyType>(static_cast<std::int32_t>(winrt::impl::property_type_of<T>()) +
                                                     arrayTypes);
    }
}

using Mismatch = Failing<static_cast<std::int32_t>(TYPE_E_TYPEMISMATCH)>;

// An array as a value. The getters of all other types fail with TYPE_E_TYPEMISMATCH.
template <typename T>
struct ArrayValue : Implements<ArrayValue<T>, Foundation::IReferenceArray<T>, Foundation::IPropertyValue>
{
    explicit ArrayValue(winrt::com_array<T> values) : m_values(std::move(values)) {}

    winrt::com_array<T> Value() const { return winrt::com_array<T>(m_values.begin(), m_values.end()); }

    Foundation::PropertyType Type() const noexcept { return ArrayTypeOf<T>(); }

    bool IsNumericScalar() const noexcept { return false; }

    // The getters of single values, and those of arrays.
    static Mismatch Default() { return {}; }

    static Mismatch Default(auto const&) { return {}; }

    void Default(winrt::com_array<T>& values) const { values = Value(); }

  private:
    winrt::com_array<T> m_values;
};

} // namespace sim
