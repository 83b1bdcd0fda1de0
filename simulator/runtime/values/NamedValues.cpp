#include "simulator/runtime/values/NamedValues.h"

#include <algorithm>

namespace sim
{

namespace
{

constexpr auto nameOf = &NamedValues::Entries::value_type::first;

} // namespace

MapEntries<winrt::hstring, IInspectable> NamedValues::All() const
{
    std::lock_guard const lock(m_mutex);
    return m_entries;
}

std::optional<IInspectable> NamedValues::Find(winrt::hstring const& name) const
{
    auto const entries = All();
    auto const found = std::ranges::find(*entries, name, nameOf);
    return found != entries->end() ? std::optional(found->second) : std::nullopt;
}

bool NamedValues::Insert(winrt::hstring const& name, IInspectable const& value)
{
    return Change([&](Entries& entries) {
        auto const found = std::ranges::find(entries, name, nameOf);
        if (found == entries.end())
        {
            entries.emplace_back(name, value);
            return false;
        }
        found->second = value;
        return true;
    });
}

bool NamedValues::Remove(winrt::hstring const& name)
{
    return Change([&](Entries& entries) {
        return std::erase_if(entries, [&](auto const& entry) { return entry.first == name; }) > 0;
    });
}

void NamedValues::Clear()
{
    Change([](Entries& entries) {
        entries.clear();
        return true;
    });
}

bool NamedValues::Change(std::function<bool(Entries&)> const& change)
{
    MapEntries<winrt::hstring, IInspectable> old; // released after the lock: a value may be anything
    std::lock_guard const lock(m_mutex);
    auto entries = std::make_shared<Entries>(*m_entries);
    auto const result = change(*entries);
    Keep(*entries);
    old = std::exchange(m_entries, std::move(entries));
    return result;
}

} // namespace sim
