// Handles the helper's requests, one function for each command.

#include "service/AppServiceLog.h"
#include "service/BackgroundTasks.h"
#include "service/ChannelUri.h"
#include "service/GetChannelUriStr.h"
#include "service/Messages.h"
#include "service/NotNull.h"
#include "service/NotificationAppService.h"
#include "service/Reply.h"
#include "service/RequestDeferral.h"
#include "service/WhenEnded.h"
#include "utils/Event.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.Collections.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::ApplicationModel::Core;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace VelmoNotificationClient
{

namespace
{

constexpr ReplyLines channelNotRequestedLines{
    {nullptr, L"GetChannelUriStr Deferral Complete with exception in create task"},
    {nullptr,
     L"GetChannelUriStr Deferral Complete with exception in task_creation, failed to send response to Helper APP"}};

constexpr ReplyLines registrationFailedLines{
    {L"Msg sent to WIN32 for background task registration failed", L"RegisterBkgServices deferral complete"},
    {L"Error in sending response for appservice requset after timeout  in bkg task registration", nullptr}};

// Also for the reply to a registration without a stored URI.
constexpr ReplyLines registrationDoneLines{
    {L"Msg sent to WIN32 for background task registration done", L"RegisterBkgServices deferral complete"},
    {L"Error in sending response for appservice requset after sucessful bkg task registration deferral complete",
     nullptr}};

constexpr ReplyLines unregistrationLines{
    {L"Msg sent to WIN32 for background task unregistration done", L"UnRegisterBkgServices deferral complete"},
    {L"Error in sending response for appservice requset after sucessful bkg task unregistration", nullptr}};

void GetChannelUri(ValueSet const& outgoingMessage, RequestDeferral const& requestDeferral)
{
    appServiceLog.Info(L"RequestReceived for channel URI");
    try
    {
        GetChannelUriStr(outgoingMessage, requestDeferral); // replies asynchronously
    }
    catch (...)
    {
        SetNewMessage(outgoingMessage, Messages::updatedChannelUriAvailable);
        SendReply(outgoingMessage, requestDeferral, channelNotRequestedLines);
    }
}

void RegisterBackgroundTask(ValueSet const& outgoingMessage, RequestDeferral const& requestDeferral)
{
    constexpr std::uint32_t waitMilliseconds = 60'000;

    appServiceLog.Info(L"RequestReceived to Register BackgroundTask");
    auto* const registered = zant::CreateEvnt();
    appServiceLog.Info(L"Going to Wait for 60 sec till background Task is registered");
    RegsiterBackgroundtasks(registered); // on other threads
    if (zant::WaitforEvent(registered, waitMilliseconds) != zant::EventWaitResult::Signalled)
    {
        appServiceLog.Error(L"Wait for background task registration failed");
        SetNewMessage(outgoingMessage, Messages::backgroundtaskRegistrationFailed);
        SendReply(outgoingMessage, requestDeferral, registrationFailedLines);
        return;
    }
    appServiceLog.Info(L"Event Set Sucesfully for device registration");
    if (auto const uri = StoredChannelUri())
    {
        appServiceLog.Info(L"URI is present in local setting");
        SetNewMessage(outgoingMessage, Messages::registerBkgTaskDone);
        outgoingMessage.Insert(Messages::newCuriKey, uri);
    }
    else
    {
        appServiceLog.Error(L"URI is not present in local setting");
        SetNewMessage(outgoingMessage, Messages::backgroundtaskRegistrationFailed);
    }
    SendReply(outgoingMessage, requestDeferral, registrationDoneLines);
}

void UnregisterBackgroundTask(ValueSet const& outgoingMessage, RequestDeferral const& requestDeferral)
{
    appServiceLog.Info(L"RequestReceived to Unregister BackgroundTask");
    appServiceLog.Info(L"ZEB From Appservice Unregister all the background tasks");
    UnregisterOwnBackgroundTasks();
    SetNewMessage(outgoingMessage, Messages::unregisterBackgroundTaskDone);
    SendReply(outgoingMessage, requestDeferral, unregistrationLines);
}

void ExitAcknowledged(RequestDeferral const& requestDeferral)
{
    appServiceLog.Info(L"Ack sent to VelmoNotificationHelper for exit");
    requestDeferral.Complete();
    appServiceLog.Info(L"Exit ZEB deferral complete");
    CoreApplication::Exit();
}

void ExitZeb(AppServiceRequest const& request, RequestDeferral const& requestDeferral)
{
    appServiceLog.Info(L"RequestReceived to exit Velmo Notification Client");
    UnregisterOwnBackgroundTasks();
    ValueSet const acknowledgement;
    acknowledgement.Insert(Messages::messageAckKey, winrt::box_value(Messages::ack));
    try
    {
        auto const send = NotNull(request.SendResponseAsync(acknowledgement));
        WhenEnded(send, [requestDeferral](auto&&...) { ExitAcknowledged(requestDeferral); });
    }
    catch (...)
    {
        appServiceLog.Error(L"Error in sending ack still closing");
        requestDeferral.Complete();
        CoreApplication::Exit();
    }
}

// The command as a string. Empty, which is no command, for a value that is neither a string nor IStringable. Throws
// hresult_error when there is no value.
winrt::hstring CommandOf(AppServiceRequest const& request)
{
    auto const value = NotNull(NotNull(request.Message()).Lookup(Messages::commandKey));
    if (auto const object = value.try_as<IStringable>())
    {
        return object.ToString();
    }
    return winrt::unbox_value_or<winrt::hstring>(value, L"");
}

} // namespace

// Uncaught exceptions propagate to the platform: the request has no log line and no reply, and stays open, like one
// with an unknown command.
void NotificationAppService::OnRequestReceived(AppServiceConnection const&,
                                               AppServiceRequestReceivedEventArgs const& args)
{
    appServiceLog.Info(L"Inside OnRequestReceived to process appservice request from Win32 App");
    appServiceLog.Info(L"Acquired deferral to complete app service request");
    RequestDeferral const requestDeferral(NotNull(args.GetDeferral()));
    ValueSet const outgoingMessage;
    auto const request = NotNull(args.Request());
    auto const command = CommandOf(request);
    if (command == Messages::getChannelUri)
    {
        GetChannelUri(outgoingMessage, requestDeferral);
    }
    else if (command == Messages::registerBackgroundTask)
    {
        RegisterBackgroundTask(outgoingMessage, requestDeferral);
    }
    else if (command == Messages::unregisterBackgroundTask)
    {
        UnregisterBackgroundTask(outgoingMessage, requestDeferral);
    }
    else if (command == Messages::exitZeb)
    {
        ExitZeb(request, requestDeferral);
    }
}

} // namespace VelmoNotificationClient
