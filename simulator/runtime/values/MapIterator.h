#pragma once
#include "simulator/runtime/values/KeyValuePair.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace sim
{

// The entries of a map, as they were when somebody began to walk through them.
template <typename K, typename V>
using MapEntries = std::shared_ptr<std::vector<std::pair<K, V>> const>;

// Walks through the entries of a map in their order. calls: as for KeyValuePair.
template <typename K, typename V>
struct MapIterator : winrt::implements<MapIterator<K, V>, Collections::IIterator<Collections::IKeyValuePair<K, V>>>
{
    using Pair = Collections::IKeyValuePair<K, V>;

    MapIterator(MapEntries<K, V> entries, std::wstring calls) : m_entries(std::move(entries)), m_calls(std::move(calls))
    {
    }

    Pair Current() const
    {
        if (IsStruckByNull(L".Current"))
        {
            return nullptr;
        }
        if (m_next == m_entries->size())
        {
            throw winrt::hresult_out_of_bounds();
        }
        return PairAt(m_next);
    }

    bool HasCurrent() const
    {
        IsStruckByNull(L".HasCurrent");
        return m_next < m_entries->size();
    }

    bool MoveNext()
    {
        IsStruckByNull(L".MoveNext");
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
    bool IsStruckByNull(std::wstring_view member) const
    {
        return !m_calls.empty() && StruckByNull(m_calls + std::wstring(member));
    }

    Pair PairAt(std::size_t position) const
    {
        auto const& [key, value] = (*m_entries)[position];
        return winrt::make<KeyValuePair<K, V>>(key, value, m_calls);
    }

    MapEntries<K, V> m_entries;
    std::wstring m_calls;
    std::size_t m_next = 0;
};

} // namespace sim
