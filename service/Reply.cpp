#include "service/Reply.h"

#include "service/AppServiceLog.h"
#include "service/NotNull.h"
#include "service/NotificationAppService.h"
#include "service/Settled.h"

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace VelmoNotificationClient
{

namespace
{

using WriteLine = void (LogSite::*)(wchar_t const* format) const;

void Complete(AppServiceDeferral const& requestDeferral, CompletionLines const& lines, WriteLine write)
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

winrt::fire_and_forget CompleteWhenSent(IAsyncOperation<AppServiceResponse> send, AppServiceDeferral requestDeferral,
                                        CompletionLines lines)
{
    co_await Settled(send);
    Complete(requestDeferral, lines, &LogSite::Info<>);
}

} // namespace

void SendReply(ValueSet const& message, AppServiceDeferral const& requestDeferral, ReplyLines const& lines)
{
    try
    {
        auto const connection = NotNull(NotificationAppService::appServiceConnection.Get());
        CompleteWhenSent(NotNull(connection.SendMessageAsync(message)), requestDeferral, lines.sent);
    }
    catch (...)
    {
        Complete(requestDeferral, lines.notSent, &LogSite::Error<>);
    }
}

} // namespace VelmoNotificationClient
