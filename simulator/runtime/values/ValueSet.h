#pragma once
#include "simulator/runtime/values/NamedMap.h"

namespace sim
{

// Windows.Foundation.Collections.ValueSet: values by name, in the order in which they were inserted.
struct ValueSet : NamedMap<ValueSet>
{
    using class_type = Collections::ValueSet;
    using MapChangedHandler = Collections::MapChangedEventHandler<winrt::hstring, IInspectable>;

    explicit ValueSet(NamedValues::Entries entries = {}) : NamedMap(std::make_shared<NamedValues>(std::move(entries)))
    {
    }

    // Fails with E_BOUNDS for a name that there is not.
    IInspectable Lookup(winrt::hstring const& name) const;
    bool Insert(winrt::hstring const& name, IInspectable const& value);
    void Remove(winrt::hstring const& name);
    void Clear();

    winrt::event_token MapChanged(MapChangedHandler const& handler) { return m_mapChanged.add(handler); }

    void MapChanged(winrt::event_token token) { m_mapChanged.remove(token); }

  private:
    void Raise(Collections::CollectionChange change, winrt::hstring const& name);

    winrt::event<MapChangedHandler> m_mapChanged;
};

} // namespace sim
