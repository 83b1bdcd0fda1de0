#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// What an app gets that is activated for a new connection.
struct AppServiceTriggerDetails
    : winrt::implements<AppServiceTriggerDetails, Platform::AppService::IAppServiceTriggerDetails,
                        Platform::AppService::IAppServiceTriggerDetails2,
                        Platform::AppService::IAppServiceTriggerDetails3,
                        Platform::AppService::IAppServiceTriggerDetails4>
{
    using class_type = Platform::AppService::AppServiceTriggerDetails;

    // callerFamily: empty for a caller without a package.
    AppServiceTriggerDetails(std::wstring_view name, std::wstring_view callerFamily,
                             Platform::AppService::AppServiceConnection connection)
        : m_name(name), m_callerFamily(callerFamily), m_connection(std::move(connection))
    {
    }

    winrt::hstring Name() const { return m_name; }

    winrt::hstring CallerPackageFamilyName() const { return m_callerFamily; }

    Platform::AppService::AppServiceConnection AppServiceConnection() const
    {
        constexpr std::wstring_view call = L"AppServiceTriggerDetails.AppServiceConnection";
        return StruckByNull(call) ? Platform::AppService::AppServiceConnection(nullptr) : m_connection;
    }

    bool IsRemoteSystemConnection() const noexcept { return false; }

    Unserved CheckCallerForCapabilityAsync(winrt::hstring const&) const { return {}; }

    Unserved CallerRemoteConnectionToken() const { return {}; }

  private:
    winrt::hstring m_name;
    winrt::hstring m_callerFamily;
    Platform::AppService::AppServiceConnection m_connection;
};

} // namespace sim
