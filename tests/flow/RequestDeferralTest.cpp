// Repeated completion of a request's deferral, and a platform that refuses all but the first.

#include "service/RequestDeferral.h"
#include "service/NotificationAppService.h"
#include "tests/flow/FakeRequest.h"
#include "tests/flow/ServiceFlow.h"

using test::FakeDeferral;
using VelmoNotificationClient::NotificationAppService;
using VelmoNotificationClient::RequestDeferral;
using winrt::Windows::ApplicationModel::AppService::AppServiceDeferral;
using winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs;

namespace
{

TEST(RequestDeferral, IsCompletedAgainThoughThePlatformRefusesThat)
{
    auto const platform = winrt::make_self<FakeDeferral>();
    platform->refusedAfter = 1;
    RequestDeferral const deferral(platform.as<AppServiceDeferral>());
    auto const copy = deferral;
    deferral.Complete();
    EXPECT_NO_THROW(copy.Complete());
    EXPECT_NO_THROW(deferral.Complete());
    EXPECT_EQ(platform->calls, 3);
}

TEST(RequestDeferral, FailsUntilACompletionHasSucceeded)
{
    auto const platform = winrt::make_self<FakeDeferral>();
    platform->refusedAfter = 0;
    RequestDeferral const deferral(platform.as<AppServiceDeferral>());
    EXPECT_THROW(deferral.Complete(), winrt::hresult_illegal_method_call);
    EXPECT_THROW(deferral.Complete(), winrt::hresult_illegal_method_call);
    EXPECT_EQ(platform->calls, 2);
}

// Calls `during` when it is completed.
struct NestedDeferral
    : winrt::implements<NestedDeferral, winrt::Windows::ApplicationModel::AppService::IAppServiceDeferral>
{
    using class_type = AppServiceDeferral;

    void Complete() { during(); }

    std::function<void()> during;
};

TEST(RequestDeferral, LeavesTheFailureToTheCompletionThatIsUnderWay)
{
    auto const platform = winrt::make_self<NestedDeferral>();
    RequestDeferral const deferral(platform.as<AppServiceDeferral>());
    int calls = 0;
    platform->during = [&] {
        if (++calls == 1)
        {
            EXPECT_NO_THROW(deferral.Complete()); // as another thread would meanwhile
        }
        throw winrt::hresult_illegal_method_call();
    };
    EXPECT_THROW(deferral.Complete(), winrt::hresult_illegal_method_call);
    EXPECT_EQ(calls, 2);
}

class RequestDeferralCompletedOnce : public test::ServiceFlow
{
  protected:
    // Asks for the channel, of which the platform takes one completion.
    winrt::com_ptr<FakeDeferral> AskForTheChannel()
    {
        auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::box_value(L"GetChannelUri"));
        args->deferral->refusedAfter = 1;
        NotificationAppService::OnRequestReceived(nullptr, args.as<AppServiceRequestReceivedEventArgs>());
        return args->deferral;
    }
};

TEST_F(RequestDeferralCompletedOnce, GoesOnWhenThePlatformRefusesTheOthers)
{
    auto const deferral = AskForTheChannel();
    log->WaitForMessage(L"Inside GetChannelUriStr, task executed no exception seen");
    log->WaitForMessage(L"GetChannelUriStr Deferral Complete");
    EXPECT_EQ(deferral->calls, 2);
}

TEST_F(RequestDeferralCompletedOnce, GoesOnAfterTwoMessages)
{
    host.SetFault(L"ApplicationDataContainerSettings.Insert now 0x80073DC8 1");
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 2"); // they are completed at once
    auto const deferral = AskForTheChannel();
    log->WaitForMessage(L"Inside GetChannelUriStr, task executed no exception seen");
    EXPECT_EQ(deferral->calls, 3);
}

} // namespace
