#pragma once
#include "simulator/runtime/Namespaces.h"

#include <mutex>
#include <optional>
#include <utility>
#include <vector>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// Values by name, in the order in which the names came. Any thread.
class NamedValues
{
  public:
    using Entries = std::vector<std::pair<winrt::hstring, IInspectable>>;

    std::optional<IInspectable> Find(winrt::hstring const& name) const;
    std::uint32_t Size() const;

    // True when it replaced a value, which keeps its place.
    bool Insert(winrt::hstring const& name, IInspectable const& value);

    // False when there is none of that name.
    bool Remove(winrt::hstring const& name);

    void Clear();
    Entries All() const;

  private:
    mutable std::mutex m_mutex;
    Entries m_entries;
};

} // namespace sim
