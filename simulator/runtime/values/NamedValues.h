#pragma once
#include "simulator/runtime/values/MapView.h"

#include <functional>
#include <mutex>
#include <optional>

namespace sim
{

// Values by name, in the order in which the names came. Any thread.
class NamedValues
{
  public:
    using Entries = std::vector<std::pair<winrt::hstring, IInspectable>>;

    explicit NamedValues(Entries entries = {}) : m_entries(std::make_shared<Entries const>(std::move(entries))) {}

    NamedValues(NamedValues const&) = delete;
    NamedValues& operator=(NamedValues const&) = delete;
    virtual ~NamedValues() = default;

    // A snapshot.
    MapEntries<winrt::hstring, IInspectable> All() const
    {
        std::lock_guard const lock(m_mutex);
        return m_entries;
    }

    std::optional<IInspectable> Find(winrt::hstring const& name) const
    {
        auto const entries = All();
        auto const found = std::ranges::find(*entries, name, &Entries::value_type::first);
        return found != entries->end() ? std::optional(found->second) : std::nullopt;
    }

    // True when it replaced a value, which keeps its place.
    bool Insert(winrt::hstring const& name, IInspectable const& value)
    {
        return Change([&](Entries& entries) {
            auto const found = std::ranges::find(entries, name, &Entries::value_type::first);
            if (found == entries.end())
            {
                entries.emplace_back(name, value);
                return false;
            }
            found->second = value;
            return true;
        });
    }

    // False for a missing name.
    bool Remove(winrt::hstring const& name)
    {
        return Change([&](Entries& entries) {
            return std::erase_if(entries, [&](auto const& entry) { return entry.first == name; }) > 0;
        });
    }

    void Clear()
    {
        Change([](Entries& entries) {
            entries.clear();
            return true;
        });
    }

  protected:
    // Called with the values to be; nothing changes when it throws.
    virtual void Save(Entries const& entries) {}

  private:
    bool Change(std::function<bool(Entries&)> const& change)
    {
        MapEntries<winrt::hstring, IInspectable> old; // released after the lock: a value's destructor may be the app's
        std::lock_guard const lock(m_mutex);
        auto entries = std::make_shared<Entries>(*m_entries);
        auto const result = change(*entries);
        Save(*entries);
        old = std::exchange(m_entries, std::move(entries));
        return result;
    }

    mutable std::mutex m_mutex;
    MapEntries<winrt::hstring, IInspectable> m_entries;
};

// The common members of the platform's maps of values by name; D declares the others.
template <typename D>
struct NamedMap : Implements<D, Collections::IPropertySet, Collections::IObservableMap<winrt::hstring, IInspectable>,
                             Collections::IMap<winrt::hstring, IInspectable>,
                             Collections::IIterable<Collections::IKeyValuePair<winrt::hstring, IInspectable>>>
{
    std::uint32_t Size() const { return static_cast<std::uint32_t>(m_values->All()->size()); }

    bool HasKey(winrt::hstring const& name) const { return m_values->Find(name).has_value(); }

    auto GetView() const { return winrt::make<MapView<winrt::hstring, IInspectable>>(m_values->All()); }

    auto First() const { return GetView().First(); }

  protected:
    // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): as winrt::implements
    explicit NamedMap(std::shared_ptr<NamedValues> values) : m_values(std::move(values)) {}

    std::shared_ptr<NamedValues> const m_values;
};

} // namespace sim
