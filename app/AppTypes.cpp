#include "app/AppTypes.h"

namespace VelmoNotificationClient
{

XamlMetaDataProvider& AppTypes::Provider()
{
    static auto& provider = *winrt::make_self<XamlMetaDataProvider>().detach();
    return provider;
}

} // namespace VelmoNotificationClient
