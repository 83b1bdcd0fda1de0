#include "simulator/runtime/values/ValueSet.h"

#include "simulator/runtime/Runtime.h"

namespace sim
{

using Collections::CollectionChange;

namespace
{

struct MapChangedEventArgs : winrt::implements<MapChangedEventArgs, Collections::IMapChangedEventArgs<winrt::hstring>>
{
    MapChangedEventArgs(Collections::CollectionChange change, winrt::hstring key)
        : m_change(change), m_key(std::move(key))
    {
    }

    Collections::CollectionChange CollectionChange() const noexcept { return m_change; }

    winrt::hstring Key() const { return m_key; }

  private:
    Collections::CollectionChange m_change;
    winrt::hstring m_key;
};

} // namespace

IInspectable ValueSet::Lookup(winrt::hstring const& name) const
{
    if (StruckByNull(L"ValueSet.Lookup"))
    {
        return nullptr;
    }
    auto const found = m_values->Find(name);
    return found ? *found : throw winrt::hresult_out_of_bounds();
}

bool ValueSet::Insert(winrt::hstring const& name, IInspectable const& value)
{
    ThrowIfStruck(L"ValueSet.Insert");
    auto const hasReplaced = m_values->Insert(name, value);
    Raise(hasReplaced ? CollectionChange::ItemChanged : CollectionChange::ItemInserted, name);
    return hasReplaced;
}

void ValueSet::Remove(winrt::hstring const& name)
{
    if (!m_values->Remove(name))
    {
        throw winrt::hresult_out_of_bounds();
    }
    Raise(CollectionChange::ItemRemoved, name);
}

void ValueSet::Clear()
{
    m_values->Clear();
    Raise(CollectionChange::Reset, {});
}

void ValueSet::Raise(CollectionChange change, winrt::hstring const& name)
{
    if (m_mapChanged)
    {
        m_mapChanged(*this, winrt::make<MapChangedEventArgs>(change, name));
    }
}

} // namespace sim
