#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// What an app gets that is activated for a new connection.
struct AppServiceTriggerDetails
    : Implements<AppServiceTriggerDetails, AppModel::AppService::IAppServiceTriggerDetails,
                 AppModel::AppService::IAppServiceTriggerDetails2, AppModel::AppService::IAppServiceTriggerDetails3,
                 AppModel::AppService::IAppServiceTriggerDetails4>
{
    using class_type = AppModel::AppService::AppServiceTriggerDetails;

    // callerFamily: empty for a caller without a package.
    AppServiceTriggerDetails(std::wstring_view name, std::wstring_view callerFamily,
                             AppModel::AppService::AppServiceConnection connection)
        : m_name(name), m_callerFamily(callerFamily), m_connection(std::move(connection))
    {
    }

    winrt::hstring Name() const { return m_name; }

    winrt::hstring CallerPackageFamilyName() const { return m_callerFamily; }

    AppModel::AppService::AppServiceConnection AppServiceConnection() const
    {
        constexpr std::wstring_view call = L"AppServiceTriggerDetails.AppServiceConnection";
        return StruckByNull(call) ? AppModel::AppService::AppServiceConnection(nullptr) : m_connection;
    }

    bool IsRemoteSystemConnection() const noexcept { return false; }

  private:
    winrt::hstring m_name;
    winrt::hstring m_callerFamily;
    AppModel::AppService::AppServiceConnection m_connection;
};

} // namespace sim
