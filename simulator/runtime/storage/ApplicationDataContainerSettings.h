#pragma once
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/storage/SettingsStore.h"
#include "simulator/runtime/values/NamedMap.h"

#include <winrt/Windows.Storage.h>

namespace sim
{

// The values of an app's local settings.
struct ApplicationDataContainerSettings : NamedMap<ApplicationDataContainerSettings>
{
    using class_type = winrt::Windows::Storage::ApplicationDataContainerSettings;

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

} // namespace sim
