#include "simulator/runtime/push/PushNotificationChannelManager.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/push/PushNotificationChannel.h"

namespace sim
{

namespace
{

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
    co_return winrt::make<PushNotificationChannel>(answer.uri,
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
