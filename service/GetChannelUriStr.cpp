#include "service/GetChannelUriStr.h"

#include "service/AppServiceLog.h"
#include "service/ChannelUri.h"
#include "service/Messages.h"
#include "service/Reply.h"

using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;
using namespace winrt::Windows::Networking::PushNotifications;

namespace VelmoNotificationClient
{

namespace
{

constexpr ReplyLines replyLines{
    {nullptr, L"GetChannelUriStr Deferral Complete"},
    {nullptr, L"GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP"}};

void SendUpdate(ValueSet const& reply, RequestDeferral const& requestDeferral)
{
    SetNewMessage(reply, Messages::updatedChannelUriAvailable);
    SendReply(reply, requestDeferral, replyLines);
}

// The helper receives an update even if no URI is stored: the message then lacks it. If the new URI cannot be stored,
// the helper receives such an update first, and then the URI stored before, if any.
void SendStoredUri(PushNotificationChannel const& channel, ValueSet const& reply,
                   RequestDeferral const& requestDeferral)
{
    if (!StoreChannelUri(channel, L"From Appservice channel : uri is written to local setting"))
    {
        appServiceLog.Error(L"Appservice unable to write channel uri to localdata");
        SendUpdate(reply, requestDeferral);
    }
    if (auto const uri = StoredChannelUri())
    {
        appServiceLog.Info(L"Channel URI found in local setting");
        SetNewMessage(reply, Messages::updatedChannelUriAvailable);
        reply.Insert(Messages::newCuriKey, uri);
        SendReply(reply, requestDeferral, replyLines);
    }
    else
    {
        appServiceLog.Info(L"Channel URI not found in local setting");
        SendUpdate(reply, requestDeferral);
        appServiceLog.Error(L"No Channel URI found in local setting");
    }
}

void ReplyWithChannel(ChannelRequest const& request, ValueSet const& reply, RequestDeferral const& requestDeferral)
{
    try
    {
        SendStoredUri(request.GetResults(), reply, requestDeferral);
        requestDeferral.Complete();
        appServiceLog.Info(L"Inside GetChannelUriStr, task executed no exception seen");
    }
    catch (...)
    {
        requestDeferral.Complete();
        appServiceLog.Error(L"Inside GetChannelUriStr, Exception raised in tast_creation for channelURI");
    }
}

} // namespace

void GetChannelUriStr(ValueSet const& outgoingMessage, RequestDeferral const& requestDeferral)
{
    RequestChannel([=](ChannelRequest const& request) { ReplyWithChannel(request, outgoingMessage, requestDeferral); });
}

} // namespace VelmoNotificationClient
