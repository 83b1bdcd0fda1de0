#include "simulator/runtime/values/ValueSet.h"

#include "simulator/runtime/values/MapChangedEventArgs.h"
#include "simulator/runtime/values/MapView.h"

namespace sim
{

using Collections::CollectionChange;

IInspectable ValueSet::Lookup(winrt::hstring const& name) const
{
    if (StruckByNull(L"ValueSet.Lookup"))
    {
        return nullptr;
    }
    auto const found = m_values.Find(name);
    return found ? *found : throw winrt::hresult_out_of_bounds();
}

std::uint32_t ValueSet::Size() const
{
    return m_values.Size();
}

bool ValueSet::HasKey(winrt::hstring const& name) const
{
    return m_values.Find(name).has_value();
}

Collections::IMapView<winrt::hstring, IInspectable> ValueSet::GetView() const
{
    return winrt::make<MapView<winrt::hstring, IInspectable>>(
        std::make_shared<NamedValues::Entries const>(m_values.All()));
}

bool ValueSet::Insert(winrt::hstring const& name, IInspectable const& value)
{
    ThrowIfStruck(L"ValueSet.Insert");
    auto const hasReplaced = m_values.Insert(name, value);
    Tell(hasReplaced ? CollectionChange::ItemChanged : CollectionChange::ItemInserted, name);
    return hasReplaced;
}

void ValueSet::Remove(winrt::hstring const& name)
{
    if (!m_values.Remove(name))
    {
        throw winrt::hresult_out_of_bounds();
    }
    Tell(CollectionChange::ItemRemoved, name);
}

void ValueSet::Clear()
{
    m_values.Clear();
    Tell(CollectionChange::Reset, {});
}

Collections::IIterator<Collections::IKeyValuePair<winrt::hstring, IInspectable>> ValueSet::First() const
{
    return winrt::make<MapIterator<winrt::hstring, IInspectable>>(
        std::make_shared<NamedValues::Entries const>(m_values.All()), L"");
}

void ValueSet::Tell(CollectionChange change, winrt::hstring const& name)
{
    if (m_mapChanged)
    {
        m_mapChanged(*this, winrt::make<MapChangedEventArgs>(change, name));
    }
}

} // namespace sim
