#include "simulator/runtime/values/NamedValues.h"

#include <algorithm>

namespace sim
{

namespace
{

constexpr auto nameOf = &NamedValues::Entries::value_type::first;

} // namespace

std::optional<IInspectable> NamedValues::Find(winrt::hstring const& name) const
{
    std::lock_guard const lock(m_mutex);
    auto const found = std::ranges::find(m_entries, name, nameOf);
    return found != m_entries.end() ? std::optional(found->second) : std::nullopt;
}

std::uint32_t NamedValues::Size() const
{
    std::lock_guard const lock(m_mutex);
    return static_cast<std::uint32_t>(m_entries.size());
}

bool NamedValues::Insert(winrt::hstring const& name, IInspectable const& value)
{
    IInspectable old; // released after the lock: it may be anything
    std::lock_guard const lock(m_mutex);
    auto const found = std::ranges::find(m_entries, name, nameOf);
    if (found == m_entries.end())
    {
        m_entries.emplace_back(name, value);
        return false;
    }
    old = std::exchange(found->second, value);
    return true;
}

bool NamedValues::Remove(winrt::hstring const& name)
{
    IInspectable old; // released after the lock
    std::lock_guard const lock(m_mutex);
    auto const found = std::ranges::find(m_entries, name, nameOf);
    if (found == m_entries.end())
    {
        return false;
    }
    old = std::move(found->second);
    m_entries.erase(found);
    return true;
}

void NamedValues::Clear()
{
    Entries old; // released after the lock
    std::lock_guard const lock(m_mutex);
    old.swap(m_entries);
}

NamedValues::Entries NamedValues::All() const
{
    std::lock_guard const lock(m_mutex);
    return m_entries;
}

} // namespace sim
