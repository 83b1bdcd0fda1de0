#include "service/Reply.h"

#include "service/ActiveConnection.h"
#include "service/AppServiceLog.h"
#include "service/Messages.h"
#include "service/NotNull.h"
#include "service/WhenEnded.h"

using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace VelmoNotificationClient
{

namespace
{

using WriteLine = void (LogSite::*)(wchar_t const* format) const;

void Complete(RequestDeferral const& requestDeferral, CompletionLines const& lines, WriteLine write)
{
    if (lines.before)
    {
        (appServiceLog.*write)(lines.before);
    }
    requestDeferral.Complete();
    if (lines.after)
    {
        (appServiceLog.*write)(lines.after);
    }
}

} // namespace

void SetNewMessage(ValueSet const& message, wchar_t const* value)
{
    message.Insert(Messages::newMessageKey, winrt::box_value(value));
}

void SendReply(ValueSet const& message, RequestDeferral const& requestDeferral, ReplyLines const& lines)
{
    try
    {
        auto const connection = NotNull(ActiveConnection::appServiceConnection.Get());
        auto const send = NotNull(connection.SendMessageAsync(message));
        WhenEnded(send, [requestDeferral, sent = lines.sent](auto&&...) {
            Complete(requestDeferral, sent, &LogSite::Info<>);
        });
    }
    catch (...)
    {
        Complete(requestDeferral, lines.notSent, &LogSite::Error<>);
    }
}

} // namespace VelmoNotificationClient
