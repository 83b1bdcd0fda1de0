#include "simulator/runtime/storage/ApplicationDataContainerSettings.h"

#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/MapView.h"

namespace sim
{

namespace
{

MapEntries<winrt::hstring, IInspectable> EntriesOf(SettingsStore const& store)
{
    auto entries = std::make_shared<std::vector<std::pair<winrt::hstring, IInspectable>>>();
    for (auto const& name : store.Names())
    {
        entries->emplace_back(winrt::hstring(name), store.Find(name));
    }
    return entries;
}

} // namespace

IInspectable ApplicationDataContainerSettings::Lookup(winrt::hstring const& name) const
{
    return StruckByNull(L"ApplicationDataContainerSettings.Lookup") ? nullptr : m_store->Find(name);
}

bool ApplicationDataContainerSettings::Insert(winrt::hstring const& name, IInspectable const& value)
{
    ThrowIfStruck(L"ApplicationDataContainerSettings.Insert");
    return m_store->Insert(name, value);
}

std::uint32_t ApplicationDataContainerSettings::Size() const
{
    return static_cast<std::uint32_t>(m_store->Names().size());
}

bool ApplicationDataContainerSettings::HasKey(winrt::hstring const& name) const
{
    return m_store->Contains(name);
}

Collections::IMapView<winrt::hstring, IInspectable> ApplicationDataContainerSettings::GetView() const
{
    return winrt::make<MapView<winrt::hstring, IInspectable>>(EntriesOf(*m_store));
}

void ApplicationDataContainerSettings::Remove(winrt::hstring const& name)
{
    m_store->Remove(name);
}

void ApplicationDataContainerSettings::Clear()
{
    m_store->Clear();
}

Collections::IIterator<Collections::IKeyValuePair<winrt::hstring, IInspectable>> ApplicationDataContainerSettings::
    First() const
{
    return winrt::make<MapIterator<winrt::hstring, IInspectable>>(EntriesOf(*m_store), L"");
}

} // namespace sim
