#include "tests/flow/RegisteredTask.h"
#include "tests/flow/ServiceFlow.h"

#include <optional>

namespace
{

using test::Error;
using test::Info;
using test::Lines;
using test::RequestLines;
using test::TaskRemoved;

Lines const exitRequested = RequestLines() + Lines{Info(L"RequestReceived to exit Velmo Notification Client")};
Lines const acknowledged = {Info(L"Ack sent to VelmoNotificationHelper for exit"), Info(L"Exit ZEB deferral complete")};

class ExitRequest : public test::ServiceFlow
{
  protected:
    ExitRequest()
    {
        for (auto const* name : {L"URITimerBGTask", L"another", L"PushNotificationBGTask"})
        {
            test::RegisterPushTask(name);
        }
    }

    auto Ask() { return helper->Ask(L"ExitZEB"); }

    // Of the app, and of the request, after these lines.
    void ExpectNoEnd(Lines const& lines, std::source_location where = std::source_location::current())
    {
        auto const trace = test::CalledFrom(where);
        auto const request = Ask();
        log->WaitForLines(exitRequested.size() + lines.size());
        host.WaitUntilQuiet();
        EXPECT_FALSE(host.HasExited());
        ExpectLog(exitRequested + lines, {}, {}, where);
        EXPECT_EQ(Completions(), std::vector<unsigned>{0});
    }
};

TEST_F(ExitRequest, RemovesTheTasksAcknowledgesAndEndsTheApp)
{
    auto const response = Ask().get();
    EXPECT_EQ(test::TestHelper::Text(response.Message()), L"MessageAck=Ack");
    WaitForEnd();
    EXPECT_EQ(TaskNames(), Lines{L"another"});
    EXPECT_TRUE(host.HasExited());
    ExpectLog(exitRequested + Lines{TaskRemoved(), TaskRemoved()} + acknowledged);
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

// The outcome of the acknowledgement is ignored, whether it fails or has another status than success.
class ExitRequestAckFailing : public ExitRequest, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(ExitRequestAckFailing, EndsTheAppAsIfItHadWorked)
{
    host.SetFault(std::wstring(L"AppServiceRequest.SendResponseAsync ") + GetParam());
    Ask();
    WaitForEnd();
    EXPECT_TRUE(host.HasExited());
    ExpectLog(exitRequested + Lines{TaskRemoved(), TaskRemoved()} + acknowledged);
}

INSTANTIATE_TEST_SUITE_P(Outcomes, ExitRequestAckFailing,
                         testing::Values(L"completion 0x800706BA", L"status 1", L"cancelled"));

class ExitRequestAckNotSent : public ExitRequest, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(ExitRequestAckNotSent, IsCompletedAndEndsTheApp)
{
    host.SetFault(std::wstring(L"AppServiceRequest.SendResponseAsync ") + GetParam());
    EXPECT_EQ(test::TestHelper::Text(Ask().get().Message()), L"");
    WaitForEnd();
    EXPECT_TRUE(host.HasExited());
    ExpectLog(exitRequested + Lines{TaskRemoved(), TaskRemoved(), Error(L"Error in sending ack still closing")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

INSTANTIATE_TEST_SUITE_P(Failures, ExitRequestAckNotSent, testing::Values(L"now 0x80000013", L"null"));

TEST_F(ExitRequest, IsCompletedAndEndsTheAppWhenNobodyCouldHearOfTheEndOfTheAcknowledgement)
{
    host.SetFault(L"AppServiceRequest.SendResponseAsync unheard 0x8000000E");
    Ask();
    WaitForEnd();
    EXPECT_TRUE(host.HasExited());
    ExpectLog(exitRequested + Lines{TaskRemoved(), TaskRemoved(), Error(L"Error in sending ack still closing")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(ExitRequest, StaysOpenAndDoesNotEndTheAppWhenATaskCannotBeRemoved)
{
    host.SetFault(L"BackgroundTaskRegistration.Unregister now 0x80004005");
    ExpectNoEnd({TaskRemoved()});
}

TEST_F(ExitRequest, StaysOpenAndDoesNotEndTheAppWhenTheAcknowledgementCannotBeWritten)
{
    host.SetFault(L"ValueSet.Insert now 0x80004005 1");
    ExpectNoEnd({TaskRemoved(), TaskRemoved()});
}

TEST_F(ExitRequest, StaysOpenAndDoesNotEndTheAppWhenItCannotBeCompletedEither)
{
    host.SetFault(L"AppServiceRequest.SendResponseAsync now 0x80000013");
    host.SetFault(L"AppServiceDeferral.Complete now 0x80004005");
    ExpectNoEnd({TaskRemoved(), TaskRemoved(), Error(L"Error in sending ack still closing")});
}

// Whether the app had been asked to end when a line had been written.
class ExitRequestEnds : public ExitRequest, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(ExitRequestEnds, AfterItsLine)
{
    if (std::wstring_view(GetParam()).starts_with(L"Error"))
    {
        host.SetFault(L"AppServiceRequest.SendResponseAsync now 0x80000013");
    }
    std::optional<bool> hasExited;
    log->After(GetParam(), [&] { hasExited = host.HasExited(); });
    Ask();
    WaitForEnd();
    EXPECT_EQ(hasExited, false);
    EXPECT_TRUE(host.HasExited());
}

INSTANTIATE_TEST_SUITE_P(Lines, ExitRequestEnds,
                         testing::Values(L"Ack sent to VelmoNotificationHelper for exit", L"Exit ZEB deferral complete",
                                         L"Error in sending ack still closing"));

TEST_F(ExitRequest, WaitsForTheAcknowledgementToBeSent)
{
    host.SetFault(L"AppServiceRequest.SendResponseAsync never");
    Ask();
    log->WaitForLines(exitRequested.size() + 2);
    host.WaitUntilQuiet();
    EXPECT_FALSE(host.HasExited());
}

} // namespace
