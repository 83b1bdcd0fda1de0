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

    // As they are now.
    MapEntries<winrt::hstring, IInspectable> All() const;
    std::optional<IInspectable> Find(winrt::hstring const& name) const;

    // True when it replaced a value, which keeps its place.
    bool Insert(winrt::hstring const& name, IInspectable const& value);

    // False when there is none of that name.
    bool Remove(winrt::hstring const& name);
    void Clear();

  protected:
    // Called with what the values are to become; they stay as they are when it throws.
    virtual void Keep(Entries const& entries) {}

  private:
    bool Change(std::function<bool(Entries&)> const& change);

    mutable std::mutex m_mutex;
    MapEntries<winrt::hstring, IInspectable> m_entries;
};

} // namespace sim
