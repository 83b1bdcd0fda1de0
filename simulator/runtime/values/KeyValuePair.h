#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <string>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// One entry of a map. calls: what its members are called among the calls that can be made to fail; empty for none.
template <typename K, typename V>
struct KeyValuePair : winrt::implements<KeyValuePair<K, V>, Collections::IKeyValuePair<K, V>>
{
    KeyValuePair(K key, V value, std::wstring calls)
        : m_key(std::move(key)), m_value(std::move(value)), m_calls(std::move(calls))
    {
    }

    K Key() const { return m_key; }

    V Value() const { return !m_calls.empty() && StruckByNull(m_calls + L".Value") ? nullptr : m_value; }

  private:
    K m_key;
    V m_value;
    std::wstring m_calls;
};

} // namespace sim
