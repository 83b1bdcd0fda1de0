#include "service/NotificationAppService.h"
#include "tests/flow/FakeRequest.h"
#include "tests/flow/ServiceFlow.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace
{

using test::ExpectLines;
using test::Info;
using test::Lines;
using test::RequestLines;
using VelmoNotificationClient::NotificationAppService;
using winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;
using winrt::Windows::Foundation::IInspectable;
using winrt::Windows::Foundation::Collections::ValueSet;

class Request : public test::ServiceFlow
{
  protected:
    // Nothing is sent, nothing more logged, and the request stays open until the connection ends.
    void ExpectNoReply(ValueSet const& message, std::source_location where = std::source_location::current())
    {
        auto const trace = test::CalledFrom(where);
        auto const request = helper->Send(message);
        log->WaitForLines(RequestLines().size());
        host.WaitUntilQuiet();
        ExpectLines(log->Lines(), RequestLines(), where);
        EXPECT_EQ(helper->Messages(), Lines());
        EXPECT_EQ(Completions(), std::vector<unsigned>{0});
        EXPECT_TRUE(request.IsOpen());
        helper->Close();
        EXPECT_EQ(request.get().Status(), AppServiceResponseStatus::Failure);
    }

    static ValueSet WithCommand(IInspectable const& value)
    {
        ValueSet const message;
        message.Insert(L"Command", value);
        return message;
    }
};

class RequestOfNoCommand : public Request, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(RequestOfNoCommand, StaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(winrt::box_value(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Texts, RequestOfNoCommand,
                         testing::Values(L"getchannelUri", L"GETCHANNELURI", L"GetChannelUri ", L" GetChannelUri",
                                         L"GetChannelUr", L"GetChannelUri2", L"registerBackgroundTask",
                                         L"UnregisterBackgroundTasks", L"ExitZEB ", L"exitzeb", L"", L"%s%n"));

TEST_F(Request, WithoutACommandStaysOpenWithoutAWord)
{
    ExpectNoReply(ValueSet());
}

TEST_F(Request, WithACommandAndMoreBehindAZeroStaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(winrt::box_value(winrt::hstring(std::wstring_view(L"UnregisterBackgroundTask\0x", 26)))));
}

TEST_F(Request, WithItsCommandUnderAnotherKeyStaysOpenWithoutAWord)
{
    ValueSet const message;
    message.Insert(L"command", winrt::box_value(L"GetChannelUri"));
    ExpectNoReply(message);
}

TEST_F(Request, WithANumberAsCommandStaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(winrt::box_value(std::int32_t{1})));
}

TEST_F(Request, WithNullAsCommandStaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(nullptr));
}

TEST_F(Request, WithANestedSetAsCommandStaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(WithCommand(winrt::box_value(L"GetChannelUri"))));
}

TEST_F(Request, WithAMegabyteAsCommandStaysOpenWithoutAWord)
{
    ExpectNoReply(WithCommand(winrt::box_value(winrt::hstring(std::wstring(1 << 20, L'G')))));
}

TEST_F(Request, IsReadByItsCommandAloneWhateverElseItCarries)
{
    ValueSet message;
    for (int i = 0; i < 1000; ++i)
    {
        message.Insert(L"key " + std::to_wstring(i), winrt::box_value(i));
    }
    message.Insert(L"Command", winrt::box_value(L"UnregisterBackgroundTask"));
    message.Insert(L"NewMessage", winrt::box_value(L"not the app's"));
    helper->Send(message).get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{L"NewMessage=UnregisterBackgroundTaskDone"});
}

class RequestFailing : public Request, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(RequestFailing, StaysOpenWithoutAWord)
{
    auto const message = WithCommand(winrt::box_value(L"GetChannelUri"));
    host.SetFault(GetParam());
    ExpectNoReply(message);
}

// All behind the deferral, which has been taken by then.
INSTANTIATE_TEST_SUITE_P(Failures, RequestFailing,
                         testing::Values(L"ValueSet now 0x80040154",
                                         L"AppServiceRequestReceivedEventArgs.Request now 0x80004005",
                                         L"AppServiceRequestReceivedEventArgs.Request null",
                                         L"AppServiceRequest.Message null", L"AppServiceRequest.Message now 0x80004005",
                                         L"ValueSet.Lookup now 0x80004005"));

class RequestWithoutDeferral : public Request, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(RequestWithoutDeferral, EndsWithItsHandlerWithoutAWord)
{
    auto const message = WithCommand(winrt::box_value(L"GetChannelUri"));
    host.SetFault(GetParam());
    auto const response = helper->Send(message).get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(test::TestHelper::Text(response.Message()), L"");
    host.WaitUntilQuiet();
    ExpectLines(log->Lines(), RequestLines());
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>());
}

INSTANTIATE_TEST_SUITE_P(Failures, RequestWithoutDeferral,
                         testing::Values(L"AppServiceRequestReceivedEventArgs.GetDeferral now 0x80004005",
                                         L"AppServiceRequestReceivedEventArgs.GetDeferral null"));

// A value with a string form of its own.
struct Stringable : winrt::implements<Stringable, winrt::Windows::Foundation::IStringable>
{
    winrt::hstring ToString() const { return L"UnregisterBackgroundTask"; }
};

TEST_F(Request, IsReadAsTheTextOfItsCommandsObject)
{
    auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::make<Stringable>());
    NotificationAppService::OnRequestReceived(nullptr, args.as<AppServiceRequestReceivedEventArgs>());
    EXPECT_EQ(helper->WaitForMessages(1), Lines{L"NewMessage=UnregisterBackgroundTaskDone"});
}

TEST_F(Request, WithNullAsCommandFailsToThePlatform)
{
    auto const args = winrt::make_self<test::FakeRequestArgs>(nullptr);
    EXPECT_THROW(NotificationAppService::OnRequestReceived(nullptr, args.as<AppServiceRequestReceivedEventArgs>()),
                 winrt::hresult_error);
    EXPECT_EQ(args->deferral->calls, 0);
}

TEST_F(Request, IsServedAgainAndAgain)
{
    for (std::size_t i = 1; i <= 20; ++i)
    {
        helper->Ask(L"GetChannelUri").get();
        helper->WaitForMessages(i);
    }
    EXPECT_EQ(helper->Messages().size(), 20u);
}

} // namespace
