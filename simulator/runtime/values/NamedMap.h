#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/values/NamedValues.h"

namespace sim
{

// What the platform's maps of values by name have in common; D declares the other members.
template <typename D>
struct NamedMap : Implements<D, Collections::IPropertySet, Collections::IObservableMap<winrt::hstring, IInspectable>,
                             Collections::IMap<winrt::hstring, IInspectable>,
                             Collections::IIterable<Collections::IKeyValuePair<winrt::hstring, IInspectable>>>
{
    std::uint32_t Size() const { return static_cast<std::uint32_t>(m_values->All()->size()); }

    bool HasKey(winrt::hstring const& name) const { return m_values->Find(name).has_value(); }

    auto GetView() const { return winrt::make<MapView<winrt::hstring, IInspectable>>(m_values->All()); }

    auto First() const { return GetView().First(); }

  protected:
    // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): as winrt::implements
    explicit NamedMap(std::shared_ptr<NamedValues> values) : m_values(std::move(values)) {}

    std::shared_ptr<NamedValues> const m_values;
};

} // namespace sim
