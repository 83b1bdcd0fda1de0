#pragma once
#include "simulator/runtime/Namespaces.h"
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

// What a map, its iterators and its entries are called among the calls that can be made to fail; empty for none.
struct MapCalls
{
    std::wstring name;

    bool AreStruckByNull(std::wstring_view member) const
    {
        return !name.empty() && StruckByNull(name + std::wstring(member));
    }
};

template <typename K, typename V>
struct KeyValuePair : winrt::implements<KeyValuePair<K, V>, Collections::IKeyValuePair<K, V>>
{
    KeyValuePair(std::pair<K, V> entry, MapCalls calls) : m_entry(std::move(entry)), m_calls(std::move(calls)) {}

    K Key() const { return m_entry.first; }

    V Value() const { return m_calls.AreStruckByNull(L".Value") ? nullptr : m_entry.second; }

  private:
    std::pair<K, V> m_entry;
    MapCalls m_calls;
};

template <typename K, typename V>
struct MapIterator : winrt::implements<MapIterator<K, V>, Collections::IIterator<Collections::IKeyValuePair<K, V>>>
{
    using Pair = Collections::IKeyValuePair<K, V>;

    MapIterator(MapEntries<K, V> entries, MapCalls calls) : m_entries(std::move(entries)), m_calls(std::move(calls)) {}

    Pair Current() const
    {
        if (m_calls.AreStruckByNull(L".Current"))
        {
            return nullptr;
        }
        return m_next < m_entries->size() ? PairAt(m_next) : throw winrt::hresult_out_of_bounds();
    }

    bool HasCurrent() const
    {
        m_calls.AreStruckByNull(L".HasCurrent");
        return m_next < m_entries->size();
    }

    bool MoveNext()
    {
        m_calls.AreStruckByNull(L".MoveNext");
        m_next = std::min(m_next + 1, m_entries->size());
        return m_next < m_entries->size();
    }

    std::uint32_t GetMany(winrt::array_view<Pair> pairs)
    {
        std::uint32_t count = 0;
        for (; count < pairs.size() && m_next < m_entries->size(); ++count, ++m_next)
        {
            pairs[count] = PairAt(m_next);
        }
        return count;
    }

  private:
    Pair PairAt(std::size_t position) const { return winrt::make<KeyValuePair<K, V>>((*m_entries)[position], m_calls); }

    MapEntries<K, V> m_entries;
    MapCalls m_calls;
    std::size_t m_next = 0;
};

} // namespace sim
