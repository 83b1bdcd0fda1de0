#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/storage/SettingsStore.h"
#include "simulator/runtime/values/NamedMap.h"

#include <winrt/Windows.Storage.h>

namespace sim
{

// The values of an app's local settings.
struct ApplicationDataContainerSettings : NamedMap<ApplicationDataContainerSettings>
{
    using class_type = Storage::ApplicationDataContainerSettings;

    explicit ApplicationDataContainerSettings(std::shared_ptr<SettingsStore> const& store)
        : NamedMap(store), m_store(store)
    {
    }

    // Each time an object of its own; null for a name that there is not.
    IInspectable Lookup(winrt::hstring const& name) const
    {
        return StruckByNull(L"ApplicationDataContainerSettings.Lookup") ? nullptr : m_store->CopyOf(name);
    }

    bool Insert(winrt::hstring const& name, IInspectable const& value) const
    {
        ThrowIfStruck(L"ApplicationDataContainerSettings.Insert");
        return m_store->Insert(name, value);
    }

    void Remove(winrt::hstring const& name) const { m_store->Remove(name); }

    void Clear() const { m_store->Clear(); }

  private:
    std::shared_ptr<SettingsStore> const m_store;
};

// The app's local settings; it has no containers inside.
struct ApplicationDataContainer : Implements<ApplicationDataContainer, Storage::IApplicationDataContainer>
{
    using class_type = Storage::ApplicationDataContainer;

    explicit ApplicationDataContainer(std::shared_ptr<SettingsStore> store) : m_store(std::move(store)) {}

    winrt::hstring Name() const { return {}; }

    Storage::ApplicationDataLocality Locality() const noexcept { return Storage::ApplicationDataLocality::Local; }

    Collections::IPropertySet Values() const
    {
        return StruckByNull(L"ApplicationDataContainer.Values")
                   ? Collections::IPropertySet(nullptr)
                   : winrt::make<ApplicationDataContainerSettings>(m_store);
    }

  private:
    std::shared_ptr<SettingsStore> m_store;
};

// What an app keeps on the device: its local settings alone are served.
struct ApplicationData : Implements<ApplicationData, Storage::IApplicationData>
{
    using class_type = Storage::ApplicationData;

    explicit ApplicationData(std::shared_ptr<SettingsStore> store) : m_store(std::move(store)) {}

    Storage::ApplicationDataContainer LocalSettings() const
    {
        return StruckByNull(L"ApplicationData.LocalSettings") ? Storage::ApplicationDataContainer(nullptr)
                                                              : winrt::make<ApplicationDataContainer>(m_store);
    }

    std::uint32_t Version() const noexcept { return 0; }

  private:
    std::shared_ptr<SettingsStore> m_store;
};

struct ApplicationDataFactory : Implements<ApplicationDataFactory, IActivationFactory, Storage::IApplicationDataStatics>
{
    // Fails with 0x80073D54 in a process without package identity.
    Storage::ApplicationData Current() const
    {
        return StruckByNull(L"ApplicationData.Current") ? Storage::ApplicationData(nullptr)
                                                        : winrt::make<ApplicationData>(SettingsStore::OfThisProcess());
    }
};

} // namespace sim
