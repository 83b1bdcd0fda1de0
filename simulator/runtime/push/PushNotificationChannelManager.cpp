#include "simulator/runtime/push/PushNotificationChannelManager.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/PoolAwaiters.h"
#include "simulator/runtime/push/PushNotificationChannel.h"

#include <cwchar>

namespace sim
{

namespace
{

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> CreateChannel(AsyncFault fault)
{
    co_await winrt::resume_agile(fault.Begin());
    Message question = {L"create-channel"};
    auto const answer = co_await Asking(std::move(question));
    winrt::check_hresult(NumberIn(answer));
    co_await winrt::resume_agile(fault.End());
    auto const expiry = std::wcstoll(WordOf(answer, 3).c_str(), nullptr, 10);
    co_return winrt::make<PushNotificationChannel>(WordOf(answer, 2),
                                                   Foundation::DateTime(Foundation::TimeSpan(expiry)));
}

} // namespace

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> PushNotificationChannelManagerFactory::
    CreatePushNotificationChannelForApplicationAsync() const
{
    AsyncFault const fault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync");
    return fault.GivesNull() ? nullptr : fault.Handed(CreateChannel(fault));
}

} // namespace sim
