#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/storage/SettingsStore.h"

#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Storage.h>

namespace sim
{

// The values of an app's local settings.
struct ApplicationDataContainerSettings
    : Implements<ApplicationDataContainerSettings, Collections::IPropertySet,
                 Collections::IObservableMap<winrt::hstring, IInspectable>,
                 Collections::IMap<winrt::hstring, IInspectable>,
                 Collections::IIterable<Collections::IKeyValuePair<winrt::hstring, IInspectable>>>
{
    using class_type = winrt::Windows::Storage::ApplicationDataContainerSettings;

    explicit ApplicationDataContainerSettings(std::shared_ptr<SettingsStore> store) : m_store(std::move(store)) {}

    // Null for a name that there is not.
    IInspectable Lookup(winrt::hstring const& name) const;
    bool Insert(winrt::hstring const& name, IInspectable const& value);
    std::uint32_t Size() const;
    bool HasKey(winrt::hstring const& name) const;
    Collections::IMapView<winrt::hstring, IInspectable> GetView() const;
    void Remove(winrt::hstring const& name);
    void Clear();
    Collections::IIterator<Collections::IKeyValuePair<winrt::hstring, IInspectable>> First() const;

  private:
    std::shared_ptr<SettingsStore> m_store;
};

} // namespace sim
