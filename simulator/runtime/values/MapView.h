#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// The entries of a map in their order, as they are at one time.
template <typename K, typename V>
using MapEntries = std::shared_ptr<std::vector<std::pair<K, V>> const>;

// call, in all three: the name of the map, as faults name it; empty for one that has no faults.

template <typename K, typename V>
struct KeyValuePair : winrt::implements<KeyValuePair<K, V>, Collections::IKeyValuePair<K, V>>
{
    KeyValuePair(std::pair<K, V> entry, std::wstring call) : m_entry(std::move(entry)), m_call(std::move(call)) {}

    K Key() const { return m_entry.first; }

    V Value() const { return InjectFault(m_call + L".Value") ? nullptr : m_entry.second; }

  private:
    std::pair<K, V> m_entry;
    std::wstring m_call;
};

template <typename K, typename V>
struct MapIterator : Implements<MapIterator<K, V>, Collections::IIterator<Collections::IKeyValuePair<K, V>>>
{
    MapIterator(MapEntries<K, V> entries, std::wstring call) : m_entries(std::move(entries)), m_call(std::move(call)) {}

    Collections::IKeyValuePair<K, V> Current() const
    {
        if (InjectFault(m_call + L".Current"))
        {
            return nullptr;
        }
        return m_next < m_entries->size() ? winrt::make<KeyValuePair<K, V>>((*m_entries)[m_next], m_call)
                                          : throw winrt::hresult_out_of_bounds();
    }

    bool HasCurrent() const
    {
        InjectFault(m_call + L".HasCurrent");
        return m_next < m_entries->size();
    }

    bool MoveNext()
    {
        InjectFault(m_call + L".MoveNext");
        m_next = std::min(m_next + 1, m_entries->size());
        return m_next < m_entries->size();
    }

  private:
    MapEntries<K, V> m_entries;
    std::wstring m_call;
    std::size_t m_next = 0;
};

// A read-only map.
template <typename K, typename V>
struct MapView
    : Implements<MapView<K, V>, Collections::IMapView<K, V>, Collections::IIterable<Collections::IKeyValuePair<K, V>>>
{
    explicit MapView(MapEntries<K, V> entries, std::wstring call = {})
        : m_entries(std::move(entries)), m_call(std::move(call))
    {
    }

    V Lookup(K const& key) const
    {
        auto const found = Find(key);
        return found != m_entries->end() ? found->second : throw winrt::hresult_out_of_bounds();
    }

    std::uint32_t Size() const noexcept { return static_cast<std::uint32_t>(m_entries->size()); }

    bool HasKey(K const& key) const { return Find(key) != m_entries->end(); }

    Collections::IIterator<Collections::IKeyValuePair<K, V>> First() const
    {
        return InjectFault(m_call + L".First") ? nullptr : winrt::make<MapIterator<K, V>>(m_entries, m_call);
    }

  private:
    auto Find(K const& key) const { return std::ranges::find(*m_entries, key, &std::pair<K, V>::first); }

    MapEntries<K, V> m_entries;
    std::wstring m_call;
};

} // namespace sim
