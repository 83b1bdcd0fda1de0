#include "simulator/runtime/push/PushNotificationChannelManager.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/Record.h"

namespace sim
{

namespace
{

// The app's channel, as it was when it was asked for. Pushes come to the background task alone.
using PushNotificationChannel =
    Record<Pushes::PushNotificationChannel, Interfaces<Pushes::IPushNotificationChannel>,
           Property<"Uri", winrt::hstring>, Property<"ExpirationTime", Foundation::DateTime>>;

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> Create(AsyncFault fault, HostReference process)
{
    co_await winrt::resume_agile(fault.Begin());
    auto const host = process.Get();
    if (!host)
    {
        throw winrt::hresult_canceled();
    }
    CreateChannel const question;
    auto const answer = co_await AnswerOf(*host, question);
    winrt::check_hresult(answer.result);
    co_await winrt::resume_agile(fault.End());
    co_return winrt::make<PushNotificationChannel>(winrt::hstring(answer.uri),
                                                   Foundation::DateTime(Foundation::TimeSpan(answer.expiry)));
}

} // namespace

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> PushNotificationChannelManagerFactory::
    CreatePushNotificationChannelForApplicationAsync() const
{
    AsyncFault const fault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync");
    return fault.GivesNull() ? nullptr : fault.Handed(Create(fault, HostReference()));
}

} // namespace sim
