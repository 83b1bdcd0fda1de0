#include "app/AppTypes.h"

namespace VelmoNotificationClient
{

XamlMetaDataProvider& AppTypes::Provider()
{
    if (!m_provider)
    {
        m_provider = winrt::make_self<XamlMetaDataProvider>();
    }
    return *m_provider;
}

} // namespace VelmoNotificationClient
