#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// What changed in a map.
struct MapChangedEventArgs : winrt::implements<MapChangedEventArgs, Collections::IMapChangedEventArgs<winrt::hstring>>
{
    MapChangedEventArgs(Collections::CollectionChange change, winrt::hstring key)
        : m_change(change), m_key(std::move(key))
    {
    }

    Collections::CollectionChange CollectionChange() const noexcept { return m_change; }

    winrt::hstring Key() const { return m_key; }

  private:
    Collections::CollectionChange m_change;
    winrt::hstring m_key;
};

} // namespace sim
