#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/storage/ApplicationDataContainer.h"

namespace sim
{

// What an app keeps on the device: its local settings alone are served.
struct ApplicationData : Implements<ApplicationData, winrt::Windows::Storage::IApplicationData>
{
    using class_type = winrt::Windows::Storage::ApplicationData;

    explicit ApplicationData(std::shared_ptr<SettingsStore> store) : m_store(std::move(store)) {}

    winrt::Windows::Storage::ApplicationDataContainer LocalSettings() const
    {
        return StruckByNull(L"ApplicationData.LocalSettings")
                   ? winrt::Windows::Storage::ApplicationDataContainer(nullptr)
                   : winrt::make<ApplicationDataContainer>(m_store);
    }

    std::uint32_t Version() const noexcept { return 0; }

  private:
    std::shared_ptr<SettingsStore> m_store;
};

struct ApplicationDataFactory
    : Implements<ApplicationDataFactory, IActivationFactory, winrt::Windows::Storage::IApplicationDataStatics>
{
    // Fails with 0x80073D54 in a process without package identity.
    winrt::Windows::Storage::ApplicationData Current() const
    {
        return StruckByNull(L"ApplicationData.Current") ? winrt::Windows::Storage::ApplicationData(nullptr)
                                                        : winrt::make<ApplicationData>(SettingsStore::OfThisProcess());
    }
};

} // namespace sim
