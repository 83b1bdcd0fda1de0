#pragma once
#include "simulator/runtime/values/MapIterator.h"

namespace sim
{

// A map that does not change.
template <typename K, typename V>
struct MapView : winrt::implements<MapView<K, V>, Collections::IMapView<K, V>,
                                   Collections::IIterable<Collections::IKeyValuePair<K, V>>>
{
    explicit MapView(MapEntries<K, V> entries, MapCalls calls = {})
        : m_entries(std::move(entries)), m_calls(std::move(calls))
    {
    }

    V Lookup(K const& key) const
    {
        auto const found = Find(key);
        return found != m_entries->end() ? found->second : throw winrt::hresult_out_of_bounds();
    }

    std::uint32_t Size() const noexcept { return static_cast<std::uint32_t>(m_entries->size()); }

    bool HasKey(K const& key) const { return Find(key) != m_entries->end(); }

    // It does not: the documented way to say so.
    void Split(Collections::IMapView<K, V>& first, Collections::IMapView<K, V>& second) const noexcept
    {
        first = nullptr;
        second = nullptr;
    }

    Collections::IIterator<Collections::IKeyValuePair<K, V>> First() const
    {
        return m_calls.AreStruckByNull(L".First") ? nullptr : winrt::make<MapIterator<K, V>>(m_entries, m_calls);
    }

  private:
    auto Find(K const& key) const { return std::ranges::find(*m_entries, key, &std::pair<K, V>::first); }

    MapEntries<K, V> m_entries;
    MapCalls m_calls;
};

} // namespace sim
