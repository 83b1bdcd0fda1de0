#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/storage/SettingsStore.h"

#include <winrt/Windows.Storage.h>

namespace sim
{

namespace
{

// The values of an app's local settings.
struct ApplicationDataContainerSettings : NamedMap<ApplicationDataContainerSettings>
{
    using class_type = Storage::ApplicationDataContainerSettings;

    explicit ApplicationDataContainerSettings(std::shared_ptr<SettingsStore> const& store)
        : NamedMap(store), m_store(store)
    {
    }

    // A new object each time; null for a missing name.
    IInspectable Lookup(winrt::hstring const& name) const
    {
        return InjectFault(L"ApplicationDataContainerSettings.Lookup") ? nullptr : m_store->CopyOf(name);
    }

    bool Insert(winrt::hstring const& name, IInspectable const& value) const
    {
        InjectFault(L"ApplicationDataContainerSettings.Insert");
        return m_store->Insert(name, value);
    }

    void Remove(winrt::hstring const& name) const { m_store->Remove(name); }

    void Clear() const { m_store->Clear(); }

  private:
    std::shared_ptr<SettingsStore> const m_store;
};

// The app's local settings; it has no containers inside.
using ApplicationDataContainer =
    Record<Storage::ApplicationDataContainer, Interfaces<Storage::IApplicationDataContainer>,
           Property<"Values", Collections::IPropertySet>>;

// Only the local settings are served.
using ApplicationData = Record<Storage::ApplicationData, Interfaces<Storage::IApplicationData>,
                               Property<"LocalSettings", Storage::ApplicationDataContainer>>;

struct ApplicationDataFactory : Implements<ApplicationDataFactory, IActivationFactory, Storage::IApplicationDataStatics>
{
    // Fails with 0x80073D54 in a process without package identity.
    Storage::ApplicationData Current() const
    {
        if (InjectFault(L"ApplicationData.Current"))
        {
            return nullptr;
        }
        auto const values = winrt::make<ApplicationDataContainerSettings>(SettingsStore::OfThisProcess());
        return winrt::make<ApplicationData>(winrt::make<ApplicationDataContainer>(values));
    }
};

} // namespace

IInspectable MakeApplicationDataFactory()
{
    return winrt::make<ApplicationDataFactory>();
}

} // namespace sim
