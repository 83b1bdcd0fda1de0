#include "service/NotificationAppService.h"
#include "tests/flow/FakeRequest.h"
#include "tests/flow/RegisteredTask.h"
#include "tests/flow/ServiceFlow.h"

namespace
{

using test::Error;
using test::Info;
using test::Lines;
using test::RequestLines;
using test::TaskRemoved;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;

constexpr wchar_t removalDone[] = L"NewMessage=UnregisterBackgroundTaskDone";

Lines const removalRequested = RequestLines() + Lines{Info(L"RequestReceived to Unregister BackgroundTask"),
                                                      Info(L"ZEB From Appservice Unregister all the background tasks")};
Lines const sent = {Info(L"Msg sent to WIN32 for background task unregistration done"),
                    Info(L"UnRegisterBkgServices deferral complete")};

class UnregisterBackgroundTask : public test::ServiceFlow
{
  protected:
    UnregisterBackgroundTask()
    {
        for (auto const* name : {L"PushNotificationBGTask", L"another", L"URITimerBGTask"})
        {
            test::RegisterPushTask(name);
        }
    }

    auto Ask() { return helper->Ask(L"UnregisterBackgroundTask"); }
};

TEST_F(UnregisterBackgroundTask, RemovesItsOwnTasksAndSaysSo)
{
    auto const response = Ask().get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(test::TestHelper::Text(response.Message()), L"");
    EXPECT_EQ(helper->WaitForMessages(1), Lines{removalDone});
    EXPECT_EQ(TaskNames(), Lines{L"another"});
    ExpectLog(removalRequested + Lines{TaskRemoved(), TaskRemoved()} + sent);
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(UnregisterBackgroundTask, SaysSoEachTimeAlsoWhenNothingIsLeft)
{
    Ask().get();
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(2), (Lines{removalDone, removalDone}));
    ExpectLog(removalRequested + Lines{TaskRemoved(), TaskRemoved()} + sent + removalRequested + sent);
}

TEST_F(UnregisterBackgroundTask, IsCompletedWhenTheMessageCannotBeSent)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(removalRequested +
              Lines{TaskRemoved(), TaskRemoved(),
                    Error(L"Error in sending response for appservice requset after sucessful bkg task "
                          L"unregistration")});
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(UnregisterBackgroundTask, IsCompletedWhenNobodyCouldHearOfTheEndOfTheSend)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync unheard 0x8000000E 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(helper->WaitForMessages(1), Lines{removalDone});
    ExpectLog(removalRequested +
              Lines{TaskRemoved(), TaskRemoved(),
                    Error(L"Error in sending response for appservice requset after sucessful bkg task "
                          L"unregistration")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(UnregisterBackgroundTask, LeavesTheHandlerWhenTheFailedSendCannotBeCompleted)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    host.SetFault(L"AppServiceDeferral.Complete now 0x80004005 1");
    auto const request = Ask();
    ExpectLog(removalRequested +
              Lines{TaskRemoved(), TaskRemoved(),
                    Error(L"Error in sending response for appservice requset after sucessful bkg task "
                          L"unregistration")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
}

// The outcome of a send is ignored, whether it fails or has another status than success.
class UnregisterBackgroundTaskSendFailing : public UnregisterBackgroundTask,
                                            public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(UnregisterBackgroundTaskSendFailing, LogsTheSameAsOneThatWorks)
{
    host.SetFault(std::wstring(L"AppServiceConnection.SendMessageAsync ") + GetParam() + L" 1");
    Ask();
    ExpectLog(removalRequested + Lines{TaskRemoved(), TaskRemoved()} + sent);
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

INSTANTIATE_TEST_SUITE_P(Outcomes, UnregisterBackgroundTaskSendFailing,
                         testing::Values(L"completion 0x800706BA", L"status 1", L"cancelled"));

// What fails where nothing is prepared for it: the fault, and the lines until then.
struct RemovalFailure
{
    wchar_t const* fault;
    Lines lines;
};

void PrintTo(RemovalFailure const& failure, std::ostream* stream)
{
    *stream << testing::PrintToString(failure.fault);
}

class UnregisterBackgroundTaskLeaving : public UnregisterBackgroundTask,
                                        public testing::WithParamInterface<RemovalFailure>
{
};

TEST_P(UnregisterBackgroundTaskLeaving, StaysOpenWithoutAWord)
{
    host.SetFault(GetParam().fault);
    auto const request = Ask();
    log->WaitForLines(removalRequested.size() + GetParam().lines.size());
    host.WaitUntilQuiet(); // of the app: this one has left
    ExpectLog(removalRequested + GetParam().lines);
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
}

TEST_P(UnregisterBackgroundTaskLeaving, FailsToThePlatform)
{
    auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::box_value(L"UnregisterBackgroundTask"));
    host.SetFault(GetParam().fault);
    EXPECT_TRUE(test::FailureOf(args).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Failures, UnregisterBackgroundTaskLeaving,
    testing::Values(RemovalFailure{L"BackgroundTaskRegistration.AllTasks now 0x80070490", {}},
                    RemovalFailure{L"BackgroundTaskRegistration.AllTasks.First now 0x80004005", {}},
                    RemovalFailure{L"BackgroundTaskRegistration.AllTasks.First null", {}},
                    RemovalFailure{L"BackgroundTaskRegistration.AllTasks.Current null", {}},
                    RemovalFailure{L"BackgroundTaskRegistration.Name now 0x80004005", {}},
                    RemovalFailure{L"BackgroundTaskRegistration.Unregister now 0x80004005", {TaskRemoved()}},
                    RemovalFailure{L"ValueSet.Insert now 0x80004005 1", {TaskRemoved(), TaskRemoved()}}));

TEST_F(UnregisterBackgroundTask, TakesTheWayOfAFailedSendWhenTheConnectionIsGone)
{
    VelmoNotificationClient::NotificationAppService::appServiceConnection.Set(nullptr);
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(removalRequested +
              Lines{TaskRemoved(), TaskRemoved(),
                    Error(L"Error in sending response for appservice requset after sucessful bkg task "
                          L"unregistration")});
}

} // namespace
