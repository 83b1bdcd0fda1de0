#include "tests/flow/FakeRequest.h"
#include "tests/flow/RegisteredTask.h"
#include "tests/flow/ServiceFlow.h"
#include "tests/support/RecordingHook.h"

#include <algorithm>

namespace
{

using test::CreateEventCall;
using test::Error;
using test::Info;
using test::Lines;
using test::RequestLines;
using test::TaskRemoved;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;

constexpr wchar_t uri[] = L"https://db3.notify.windows.com/?token=AQ";
constexpr wchar_t failed[] = L"NewMessage=BackgroundtaskRegistrationFailed";

Lines const registrationRequested =
    RequestLines() + Lines{Info(L"RequestReceived to Register BackgroundTask"),
                           Info(L"Going to Wait for 60 sec till background Task is registered"),
                           Info(L"Inside RegsiterBackgroundtasks")};
std::wstring const channel = Info(L"Channel URI Received");
std::wstring const channelUri = Info(L"Received Channel URI is https://db3.notify.windows.com/?token=AQ");
std::wstring const written = Info(L"Appservice channel : uri is written to local setting");
std::wstring const unableToWrite = Info(L"Appservice unable to write channel uri to localdata");
std::wstring const unregisterAll = Info(L"Unregister all the background tasks");
std::wstring const pushRegistered = Info(L"Register background task: PushNotificationTrigger task");
std::wstring const timerRegistered = Info(L"Register background task: TimerTaskName");
std::wstring const noException = Info(L"Inside RegsiterBackgroundtasks, task executed no exception seen");
std::wstring const exception =
    Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation for channelURI");
std::wstring const notStarted = Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation");

Lines const stored = {channel, channelUri, written, unregisterAll};
Lines const done = {Info(L"Event Set Sucesfully for device registration"), Info(L"URI is present in local setting"),
                    Info(L"Msg sent to WIN32 for background task registration done"),
                    Info(L"RegisterBkgServices deferral complete")};
Lines const timedOut = {Error(L"Wait for background task registration failed"),
                        Info(L"Msg sent to WIN32 for background task registration failed"),
                        Info(L"RegisterBkgServices deferral complete")};
Lines const ownTasks = {L"PushNotificationBGTask", L"URITimerBGTask"};

class RegisterBackgroundTask : public test::ServiceFlow
{
  protected:
    RegisterBackgroundTask() { host.ReplaceChannel(uri); }

    auto Ask() { return helper->Ask(L"RegisterBackgroundTask"); }
};

TEST_F(RegisterBackgroundTask, RegistersBothTasksAndSendsTheStoredUri)
{
    auto const response = Ask().get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(test::TestHelper::Text(response.Message()), L"");
    EXPECT_EQ(helper->WaitForMessages(1), Lines{std::wstring(L"NewMessage=RegisterBkgTaskDone NewCuri=") + uri});
    EXPECT_EQ(TaskNames(), ownTasks);
    EXPECT_EQ(StoredUri(), uri);
    ExpectLog(registrationRequested + stored + Lines{pushRegistered, timerRegistered}, {noException}, done);
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(RegisterBackgroundTask, RegistersAPushTriggerAndADailyTimer)
{
    Ask().get();
    std::vector<std::wstring> registered;
    for (auto const& event : host.Reports())
    {
        if (event.kind == L"task-registered")
        {
            registered.push_back(event.Detail(L"name").value_or(L"") + L" " + event.Detail(L"trigger").value_or(L"") +
                                 L" " + event.Detail(L"minutes").value_or(L"") + L" " +
                                 event.Detail(L"once").value_or(L""));
        }
    }
    EXPECT_EQ(registered, (Lines{L"PushNotificationBGTask push  ", L"URITimerBGTask timer 1440 no"}));
}

TEST_F(RegisterBackgroundTask, RemovesItsOwnEarlierTasksAndNoOthers)
{
    for (auto const* name : {L"PushNotificationBGTask", L"URITimerBGTask", L"MyPushNotificationBGTask2",
                             L"pushnotificationbgtask", L"PushNotificationBGTask"})
    {
        test::RegisterPushTask(name);
    }
    Ask().get();
    EXPECT_EQ(TaskNames(), (Lines{L"MyPushNotificationBGTask2", L"pushnotificationbgtask"} + ownTasks));
    ExpectLog(registrationRequested + stored +
                  Lines{TaskRemoved(), TaskRemoved(), TaskRemoved(), pushRegistered, timerRegistered},
              {noException}, done);
}

TEST_F(RegisterBackgroundTask, LeavesOneTaskOfEachNameHoweverOftenItIsAsked)
{
    Ask().get();
    Ask().get();
    EXPECT_EQ(TaskNames(), ownTasks);
}

TEST_F(RegisterBackgroundTask, FailsWithoutAStoredUriAndSaysThatItIsDone)
{
    host.SetFault(L"ApplicationDataContainerSettings.Lookup null");
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    ExpectLog(registrationRequested + stored + Lines{pushRegistered, timerRegistered}, {noException},
              {done[0], Error(L"URI is not present in local setting"), done[2], done[3]});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(RegisterBackgroundTask, FailsWithoutSettings)
{
    host.SetFault(L"ApplicationData.LocalSettings null");
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    ExpectLog(registrationRequested + Lines{channel, channelUri, unregisterAll, pushRegistered, timerRegistered},
              {noException}, {done[0], Error(L"URI is not present in local setting"), done[2], done[3]});
}

// What goes wrong before the tasks are registered, with the lines of the registration and the tasks that are left of
// the two that were there before. The helper learns of it when its time is up.
struct Failure
{
    wchar_t const* fault;
    Lines lines;
    Lines tasksLeft;
};

void PrintTo(Failure const& failure, std::ostream* stream)
{
    *stream << testing::PrintToString(failure.fault);
}

class RegisterBackgroundTaskFailing : public RegisterBackgroundTask, public testing::WithParamInterface<Failure>
{
  protected:
    RegisterBackgroundTaskFailing()
    {
        test::RegisterPushTask(L"PushNotificationBGTask");
        test::RegisterPushTask(L"URITimerBGTask");
        host.SetFault(GetParam().fault);
    }
};

TEST_P(RegisterBackgroundTaskFailing, IsToldWhenTheTimeIsUp)
{
    Ask();
    log->WaitForLines(registrationRequested.size() + GetParam().lines.size());
    EndRegistrationWait();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    EXPECT_EQ(TaskNames(), GetParam().tasksLeft);
    ExpectLog(registrationRequested + GetParam().lines + timedOut);
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

Lines const removed = stored + Lines{TaskRemoved(), TaskRemoved()};
Lines const pushFailed =
    removed + Lines{Error(L"Register background task: PushNotificationTrigger task failed"), noException};
Lines const timerFailed =
    removed + Lines{pushRegistered, Error(L"Register background task: TimerTaskName failed"), noException};
Lines const onlyPush = {L"PushNotificationBGTask"};
Lines const onlyTimer = {L"URITimerBGTask"};

INSTANTIATE_TEST_SUITE_P(
    Channel, RegisterBackgroundTaskFailing,
    testing::Values(
        Failure{L"PushNotificationChannelManager now 0x80040154", {notStarted}, ownTasks},
        Failure{L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync now 0x803E0111",
                {notStarted},
                ownTasks},
        Failure{L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync unheard 0x8000000E",
                {notStarted},
                ownTasks},
        Failure{L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync null",
                {notStarted},
                ownTasks},
        Failure{
            L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync completion 0x800705B4",
            {exception},
            ownTasks},
        Failure{
            L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync cancelled", {}, ownTasks},
        Failure{L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync never", {}, ownTasks},
        Failure{L"PushNotificationChannel.Uri now 0x80004005", {channel, exception}, ownTasks}));

INSTANTIATE_TEST_SUITE_P(Settings, RegisterBackgroundTaskFailing,
                         testing::Values(Failure{L"ApplicationData.Current now 0x80004005",
                                                 {channel, channelUri, unableToWrite, noException},
                                                 ownTasks},
                                         Failure{L"ApplicationData.LocalSettings now 0x80004005",
                                                 {channel, channelUri, unableToWrite, noException},
                                                 ownTasks},
                                         Failure{L"ApplicationDataContainerSettings.Lookup now 0x80004005",
                                                 {channel, channelUri, unableToWrite, noException},
                                                 ownTasks},
                                         Failure{L"ApplicationDataContainerSettings.Insert now 0x80073DC8",
                                                 {channel, channelUri, written, unableToWrite, noException},
                                                 ownTasks}));

INSTANTIATE_TEST_SUITE_P(
    Removal, RegisterBackgroundTaskFailing,
    testing::Values(
        Failure{L"BackgroundTaskRegistration now 0x80040154", stored + Lines{exception}, ownTasks},
        Failure{L"BackgroundTaskRegistration.AllTasks now 0x80070490 1", stored + Lines{exception}, ownTasks},
        Failure{L"BackgroundTaskRegistration.AllTasks null 1", stored + Lines{exception}, ownTasks},
        Failure{L"BackgroundTaskRegistration.AllTasks.First now 0x80004005 1", stored + Lines{exception}, ownTasks},
        Failure{L"BackgroundTaskRegistration.Name now 0x80004005 1", stored + Lines{exception}, ownTasks},
        Failure{L"BackgroundTaskRegistration.Unregister now 0x80004005 1", stored + Lines{TaskRemoved(), exception},
                ownTasks},
        Failure{L"BackgroundTaskRegistration.Unregister now 0x80004005 1 after 1",
                stored + Lines{TaskRemoved(), TaskRemoved(), exception}, onlyTimer}));

INSTANTIATE_TEST_SUITE_P(
    Registration, RegisterBackgroundTaskFailing,
    testing::Values(Failure{L"BackgroundTaskBuilder now 0x80040154", removed + Lines{exception}, {}},
                    Failure{L"BackgroundTaskBuilder.Name now 0x80004005", removed + Lines{exception}, {}},
                    Failure{L"PushNotificationTrigger now 0x80040154", removed + Lines{exception}, {}},
                    Failure{L"BackgroundTaskBuilder.SetTrigger now 0x80004005", removed + Lines{exception}, {}},
                    Failure{L"BackgroundTaskBuilder.Register now 0x80070718", pushFailed, {}},
                    Failure{L"BackgroundTaskBuilder.Register now 0x8007000E", pushFailed, {}},
                    Failure{L"BackgroundTaskBuilder.Name now 0x80004005 1 after 1",
                            removed + Lines{pushRegistered, exception}, onlyPush},
                    Failure{L"TimeTrigger now 0x80040154", removed + Lines{pushRegistered, exception}, onlyPush},
                    Failure{L"TimeTrigger.Create now 0x80004005", removed + Lines{pushRegistered, exception}, onlyPush},
                    Failure{L"BackgroundTaskBuilder.SetTrigger now 0x80004005 1 after 1",
                            removed + Lines{pushRegistered, exception}, onlyPush},
                    Failure{L"BackgroundTaskBuilder.Register now 0x80040154 1 after 1", timerFailed, onlyPush}));

TEST_F(RegisterBackgroundTask, IsWaitedForOnceForSixtySeconds)
{
    Ask().get();
    EXPECT_EQ(RegistrationWaits(1), std::vector<DWORD>{60'000});
}

TEST_F(RegisterBackgroundTask, IsWaitedForWhileItsChannelIsThereAtOnce)
{
    host.SetFault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync ended");
    log->After(L"Channel URI Received", [this] { RegistrationWaits(1); });
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{std::wstring(L"NewMessage=RegisterBkgTaskDone NewCuri=") + uri});
    ExpectLog(registrationRequested + stored + Lines{pushRegistered, timerRegistered}, {noException}, done);
}

TEST_F(RegisterBackgroundTask, FailsWhenTheWaitFails)
{
    FailRegistrationWait();
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    ExpectLog(registrationRequested + Lines{notStarted} + timedOut);
}

TEST_F(RegisterBackgroundTask, MakesTheEventBeforeItSaysThatItWaits)
{
    std::wstring lastLine;
    {
        CreateEventCall const create([&](auto system, auto attributes, BOOL manual, BOOL initial, auto name) {
            if (IsOfRegistration(manual))
            {
                lastLine = log->Lines().back();
            }
            return system(attributes, manual, initial, name);
        });
        Ask().get();
    }
    EXPECT_EQ(lastLine, Info(L"RequestReceived to Register BackgroundTask"));
}

TEST_F(RegisterBackgroundTask, FailsAtOnceWhenNoEventCanBeMadeAndRegistersAllTheSame)
{
    test::RecordingHook const utils;
    {
        CreateEventCall const create([](auto system, auto attributes, BOOL manual, BOOL initial, auto name) {
            return IsOfRegistration(manual) ? nullptr : system(attributes, manual, initial, name);
        });
        Ask().get();
        ExpectLog(registrationRequested, timedOut, stored + Lines{pushRegistered, timerRegistered, noException});
    }
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    EXPECT_EQ(TaskNames(), ownTasks);
    std::vector<std::wstring> messages;
    for (auto const& line : utils.Lines())
    {
        messages.push_back(std::get<5>(line));
    }
    std::ranges::sort(messages); // the last two are of two threads
    EXPECT_EQ(messages,
              (Lines{L"Failed in CreateEvnt", L"Failed to create Event", L"NULL ZANT_Event_t object passed in SetEvnt ",
                     L"NULL ZANT_Event_t object passed in WaitforEvent "}));
}

TEST_F(RegisterBackgroundTask, IsCompletedWhenItsFailureCannotBeSent)
{
    FailRegistrationWait();
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(registrationRequested +
              Lines{notStarted, timedOut[0],
                    Error(L"Error in sending response for appservice requset after timeout  in bkg task "
                          L"registration")});
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(RegisterBackgroundTask, IsCompletedWhenItsSuccessCannotBeSent)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(registrationRequested + stored + Lines{pushRegistered, timerRegistered}, {noException},
              {done[0], done[1],
               Error(L"Error in sending response for appservice requset after sucessful bkg task registration deferral "
                     L"complete")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

// Nothing is sent, nothing more logged than the lines until then, and the request stays open.
struct LeavingFailure
{
    wchar_t const* fault;
    Lines lines;
};

void PrintTo(LeavingFailure const& failure, std::ostream* stream)
{
    *stream << testing::PrintToString(failure.fault);
}

class RegisterBackgroundTaskLeaving : public RegisterBackgroundTask, public testing::WithParamInterface<LeavingFailure>
{
};

TEST_P(RegisterBackgroundTaskLeaving, StaysOpenWithoutAWord)
{
    host.SetFault(GetParam().fault);
    auto const request = Ask();
    auto const registration = registrationRequested + stored + Lines{pushRegistered, timerRegistered};
    log->WaitForLines(registration.size() + 1 + GetParam().lines.size());
    host.WaitUntilQuiet();
    EXPECT_TRUE(request.IsOpen());
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
    ExpectLog(registration, {noException}, GetParam().lines);
    EXPECT_EQ(request.get().Status(), AppServiceResponseStatus::Failure);
}

TEST_P(RegisterBackgroundTaskLeaving, FailsToThePlatform)
{
    auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::box_value(L"RegisterBackgroundTask"));
    host.SetFault(GetParam().fault);
    EXPECT_EQ(test::FailureOf(args), E_FAIL);
    log->WaitForMessage(L"Inside RegsiterBackgroundtasks, task executed no exception seen");
}

INSTANTIATE_TEST_SUITE_P(
    Failures, RegisterBackgroundTaskLeaving,
    testing::Values(LeavingFailure{L"ApplicationData.Current now 0x80004005 1 after 1", {done[0]}},
                    LeavingFailure{L"ApplicationDataContainerSettings.Lookup now 0x80004005 1 after 1", {done[0]}},
                    LeavingFailure{L"ValueSet.Insert now 0x80004005 1", {done[0], done[1]}},
                    LeavingFailure{L"ValueSet.Insert now 0x80004005 1 after 1", {done[0], done[1]}}));

TEST_F(RegisterBackgroundTask, StaysOpenWithoutAWordWhenItsFailureCannotBeWritten)
{
    FailRegistrationWait();
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    host.SetFault(L"ValueSet.Insert now 0x80004005 1");
    auto const request = Ask();
    log->WaitForMessage(L"Wait for background task registration failed");
    host.WaitUntilQuiet();
    EXPECT_TRUE(request.IsOpen());
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
    ExpectLog(registrationRequested + Lines{notStarted, timedOut[0]});
}

TEST_F(RegisterBackgroundTask, FailsToThePlatformWhenItsFailureCannotBeWritten)
{
    FailRegistrationWait();
    auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::box_value(L"RegisterBackgroundTask"));
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    host.SetFault(L"ValueSet.Insert now 0x80004005 1");
    EXPECT_EQ(test::FailureOf(args), E_FAIL);
}

TEST_F(RegisterBackgroundTask, SendsTheVeryObjectThatIsStored)
{
    host.SetFault(L"PropertyValue.CreateString now 0x80004005 1000 after 2"); // one to store it, one for "NewMessage"
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{std::wstring(L"NewMessage=RegisterBkgTaskDone NewCuri=") + uri});
}

TEST_F(RegisterBackgroundTask, TouchesNoTaskWhenTheLineBeforeTheirRemovalFails)
{
    test::RegisterPushTask(L"PushNotificationBGTask");
    log->After(L"Unregister all the background tasks", [] { throw winrt::hresult_error(E_FAIL); });
    Ask();
    log->WaitForMessage(L"Inside RegsiterBackgroundtasks, task executed no exception seen");
    EndRegistrationWait();
    ExpectLog(registrationRequested + stored + Lines{unableToWrite, noException} + timedOut);
    EXPECT_EQ(TaskNames(), Lines{L"PushNotificationBGTask"});
}

TEST_F(RegisterBackgroundTask, DoesNotHoldUpOtherRequestsWhileItWaits)
{
    host.SetFault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync never 1");
    auto const registration = Ask();
    log->WaitForLines(registrationRequested.size());
    helper->Ask(L"UnregisterBackgroundTask").get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{L"NewMessage=UnregisterBackgroundTaskDone"});
    EXPECT_TRUE(registration.IsOpen());
}

TEST_F(RegisterBackgroundTask, IsNotDisturbedByASignalThatComesAfterItsTime)
{
    log->After(L"Channel URI Received",
               [this] { log->WaitForMessage(L"Wait for background task registration failed"); });
    EndRegistrationWait();
    Ask().get();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{failed});
    log->WaitForMessage(L"Inside RegsiterBackgroundtasks, task executed no exception seen");
    EXPECT_EQ(helper->Messages(), Lines{failed});
    EXPECT_EQ(TaskNames(), ownTasks);
}

} // namespace
