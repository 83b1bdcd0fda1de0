#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/NamedValues.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// Windows.Foundation.Collections.ValueSet: values by name, in the order in which they were inserted.
struct ValueSet
    : winrt::implements<ValueSet, Collections::IPropertySet, Collections::IObservableMap<winrt::hstring, IInspectable>,
                        Collections::IMap<winrt::hstring, IInspectable>,
                        Collections::IIterable<Collections::IKeyValuePair<winrt::hstring, IInspectable>>>
{
    using class_type = Collections::ValueSet;
    using MapChangedHandler = Collections::MapChangedEventHandler<winrt::hstring, IInspectable>;

    // Fails with E_BOUNDS for a name that there is not.
    IInspectable Lookup(winrt::hstring const& name) const;
    std::uint32_t Size() const;
    bool HasKey(winrt::hstring const& name) const;
    Collections::IMapView<winrt::hstring, IInspectable> GetView() const;
    bool Insert(winrt::hstring const& name, IInspectable const& value);
    void Remove(winrt::hstring const& name);
    void Clear();
    Collections::IIterator<Collections::IKeyValuePair<winrt::hstring, IInspectable>> First() const;

    winrt::event_token MapChanged(MapChangedHandler const& handler) { return m_mapChanged.add(handler); }

    void MapChanged(winrt::event_token token) { m_mapChanged.remove(token); }

    // As Insert, for the platform itself: no fault strikes it and nobody is told.
    void Add(winrt::hstring const& name, IInspectable const& value) { m_values.Insert(name, value); }

  private:
    void Tell(Collections::CollectionChange change, winrt::hstring const& name);

    NamedValues m_values;
    winrt::event<MapChangedHandler> m_mapChanged;
};

} // namespace sim
