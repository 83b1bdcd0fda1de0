#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/storage/ApplicationDataContainerSettings.h"

namespace sim
{

// The app's local settings; it has no containers inside.
struct ApplicationDataContainer
    : Implements<ApplicationDataContainer, winrt::Windows::Storage::IApplicationDataContainer>
{
    using class_type = winrt::Windows::Storage::ApplicationDataContainer;

    explicit ApplicationDataContainer(std::shared_ptr<SettingsStore> store) : m_store(std::move(store)) {}

    winrt::hstring Name() const { return {}; }

    winrt::Windows::Storage::ApplicationDataLocality Locality() const noexcept
    {
        return winrt::Windows::Storage::ApplicationDataLocality::Local;
    }

    Collections::IPropertySet Values() const
    {
        return StruckByNull(L"ApplicationDataContainer.Values")
                   ? Collections::IPropertySet(nullptr)
                   : winrt::make<ApplicationDataContainerSettings>(m_store);
    }

  private:
    std::shared_ptr<SettingsStore> m_store;
};

} // namespace sim
