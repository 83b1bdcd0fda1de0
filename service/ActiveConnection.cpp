#include "service/ActiveConnection.h"

namespace VelmoNotificationClient
{

constinit SharedReference<ActiveConnection::AppServiceConnection> ActiveConnection::appServiceConnection;
constinit SharedReference<ActiveConnection::BackgroundTaskDeferral> ActiveConnection::serviceDeferral;

void ActiveConnection::CompleteTask()
{
    if (auto const deferral = serviceDeferral.Get())
    {
        deferral.Complete();
        serviceDeferral.Clear(deferral);
    }
}

void ActiveConnection::CloseConnection()
{
    if (auto const connection = appServiceConnection.Get())
    {
        connection.Close();
        appServiceConnection.Clear(connection);
    }
}

} // namespace VelmoNotificationClient
