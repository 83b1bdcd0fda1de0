#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Networking.PushNotifications.h>

using namespace test;
using winrt::Windows::Networking::PushNotifications::PushNotificationChannel;
using winrt::Windows::Networking::PushNotifications::PushNotificationChannelManager;
using winrt::Windows::Networking::PushNotifications::RawNotification;

namespace
{

constexpr std::int64_t day = 24 * 60; // minutes

BackgroundTaskRegistration Register(wchar_t const* name, IBackgroundTrigger const& trigger)
{
    BackgroundTaskBuilder const builder;
    builder.Name(name);
    builder.SetTrigger(trigger);
    return builder.Register();
}

std::vector<std::wstring> RegisteredNames()
{
    std::vector<std::wstring> names;
    for (auto const& entry : BackgroundTaskRegistration::AllTasks())
    {
        EXPECT_EQ(entry.Key(), entry.Value().TaskId());
        names.emplace_back(entry.Value().Name());
    }
    return names;
}

PushNotificationChannel NewChannel()
{
    return PushNotificationChannelManager::CreatePushNotificationChannelForApplicationAsync().get();
}

class BackgroundTasks : public BackgroundApp
{
  protected:
    // A run of a task that the app was activated for.
    struct Run
    {
        std::wstring name;
        IBackgroundTaskInstance instance;
        BackgroundTaskDeferral deferral;
    };

    BackgroundTasks()
    {
        onActivated = [this](IBackgroundTaskInstance const& instance) {
            instance.Canceled([this](auto&&, auto reason) { cancellations.Add(reason); });
            runs.Add({std::wstring(instance.Task().Name()), instance, instance.GetDeferral()});
        };
    }

    ~BackgroundTasks() override
    {
        EndApp();
        host.WaitUntilQuiet();
    }

    Arrivals<Run> runs;
    Arrivals<BackgroundTaskCancellationReason> cancellations;
};

} // namespace

TEST_F(BackgroundTasks, AreRegisteredUnderTheirNames)
{
    EXPECT_TRUE(RegisteredNames().empty());
    auto const first = Register(L"One", PushNotificationTrigger());
    auto const second = Register(L"One", TimeTrigger(1440, false));
    EXPECT_EQ(RegisteredNames(), (std::vector<std::wstring>{L"One", L"One"}));
    EXPECT_NE(first.TaskId(), second.TaskId());
    first.Unregister(true);
    EXPECT_EQ(RegisteredNames(), std::vector<std::wstring>{L"One"});
    EXPECT_TRUE(BackgroundTaskRegistration::AllTasks().HasKey(second.TaskId()));
    first.Unregister(true); // once more changes nothing
    EXPECT_EQ(host.Reports().back().kind, L"task-unregistered");
}

TEST_F(BackgroundTasks, CanBeUnregisteredWhileTheyAreWalkedThrough)
{
    for (auto const* const name : {L"a", L"b", L"c"})
    {
        Register(name, PushNotificationTrigger());
    }
    for (auto const& entry : BackgroundTaskRegistration::AllTasks())
    {
        entry.Value().Unregister(true);
    }
    EXPECT_TRUE(RegisteredNames().empty());
}

TEST_F(BackgroundTasks, NeedATrigger)
{
    BackgroundTaskBuilder const builder;
    builder.Name(L"a");
    EXPECT_EQ(builder.Name(), L"a");
    EXPECT_EQ(FailureOf([&] { builder.Register(); }), E_INVALIDARG);
}

TEST_F(BackgroundTasks, DoNotRunMoreOftenThanEveryQuarterOfAnHour)
{
    EXPECT_EQ(FailureOf([] { Register(L"a", TimeTrigger(14, false)); }), E_INVALIDARG);
    EXPECT_EQ(FailureOf([] { Register(L"a", TimeTrigger(15, false)); }), 0);
}

TEST_F(BackgroundTasks, RunWhenTheirTimeIsOver)
{
    Register(L"Daily", TimeTrigger(day, false));
    host.AdvanceClock(day);
    auto const run = runs.Next();
    EXPECT_EQ(run.name, L"Daily");
    EXPECT_FALSE(run.instance.TriggerDetails());
    run.deferral.Complete();
    host.WaitForReport(L"task-completed");
    host.AdvanceClock(day);
    EXPECT_EQ(runs.Next().name, L"Daily");
}

TEST_F(BackgroundTasks, RunForAPush)
{
    NewChannel();
    Register(L"Push", PushNotificationTrigger());
    host.Push(L"payload");
    auto const run = runs.Next();
    EXPECT_EQ(run.name, L"Push");
    EXPECT_EQ(run.instance.TriggerDetails().as<RawNotification>().Content(), L"payload");
    EXPECT_NE(run.instance.InstanceId(), winrt::guid{});
}

TEST_F(BackgroundTasks, RunForOnePushAtATime)
{
    NewChannel();
    Register(L"Push", PushNotificationTrigger());
    host.Push(L"first");
    host.Push(L"second");
    auto const first = runs.Next();
    EXPECT_EQ(first.instance.TriggerDetails().as<RawNotification>().Content(), L"first");
    first.deferral.Complete();
    EXPECT_EQ(runs.Next().instance.TriggerDetails().as<RawNotification>().Content(), L"second");
}

TEST_F(BackgroundTasks, EndWhenAllDeferralsAreCompleted)
{
    auto const instance = host.ActivateTask(L"Any");
    auto const run = runs.Next();
    auto const other = run.instance.GetDeferral();
    run.deferral.Complete();
    run.deferral.Complete(); // again, which changes nothing
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
    other.Complete();
    EXPECT_EQ(host.WaitForReport(L"task-completed").Detail(L"instance"), std::to_wstring(instance));
}

TEST_F(BackgroundTasks, DoNotEndWithADeferralThatIsReleased)
{
    Signal isReleased;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        instance.GetDeferral();
        isReleased.Set();
    };
    host.ActivateTask(L"Any");
    isReleased.Wait();
    onActivated = [](auto&&) {};
    host.ActivateTask(L"Other"); // no deferral: ends when the app returns
    host.WaitForReport(L"task-completed");
    EXPECT_EQ(CountReports(L"task-completed"), 1u);
}

TEST_F(BackgroundTasks, HearThatTheyAreCancelled)
{
    NewChannel();
    auto const registration = Register(L"Push", PushNotificationTrigger());
    host.Push(L"");
    auto const run = runs.Next();
    registration.Unregister(true);
    EXPECT_EQ(cancellations.Next(), BackgroundTaskCancellationReason::Abort);
    run.deferral.Complete();
    host.WaitForReport(L"task-completed");
}

TEST_F(BackgroundTasks, HearItLateWhenTheyListenLate)
{
    Signal isActivated;
    IBackgroundTaskInstance kept;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        kept = instance;
        runs.Add({L"", instance, instance.GetDeferral()});
        isActivated.Set();
    };
    auto const instance = host.ActivateTask(L"Any");
    isActivated.Wait();
    host.Cancel(instance, 10);
    host.WaitUntilQuiet();
    kept.Canceled([&](auto&&, auto reason) { cancellations.Add(reason); });
    EXPECT_EQ(cancellations.Next(), BackgroundTaskCancellationReason::ResourceRevocation);
}

TEST_F(BackgroundTasks, EndTheAppWithTheFailureOfItsOverride)
{
    onActivated = [](auto&&) { throw winrt::hresult_error(E_FAIL); };
    host.ActivateTask(L"Any");
    host.WaitForReport(L"unhandled-exception");
    EndApp();
    EXPECT_EQ(host.Failure(), E_FAIL);
}

TEST_F(BackgroundTasks, FailToRegisterOnRequest)
{
    PushNotificationTrigger const trigger;
    for (auto const* const call : {L"BackgroundTaskBuilder.ActivateInstance", L"BackgroundTaskBuilder.Name",
                                   L"BackgroundTaskBuilder.SetTrigger", L"BackgroundTaskBuilder.Register"})
    {
        host.SetFault(std::wstring(call) + L" now 0x80004005 1");
        EXPECT_EQ(FailureOf([&] { Register(L"a", trigger); }), E_FAIL);
    }
    host.SetFault(L"BackgroundTaskBuilder.Register now 0x80070718 1 after 1");
    EXPECT_EQ(FailureOf([&] { Register(L"a", trigger); }), 0);
    EXPECT_EQ(FailureOf([&] { Register(L"b", trigger); }), static_cast<std::int32_t>(0x80070718));
    EXPECT_EQ(RegisteredNames(), std::vector<std::wstring>{L"a"});
}

TEST_F(BackgroundTasks, HaveTriggersThatFailOnRequest)
{
    host.SetFault(L"PushNotificationTrigger.ActivateInstance now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { PushNotificationTrigger(); }), E_FAIL);
    host.SetFault(L"TimeTrigger.Create now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { TimeTrigger(15, false); }), E_FAIL);
    host.SetFault(L"TimeTrigger now 0x80040154 1");
    EXPECT_EQ(FailureOf([] { TimeTrigger(15, false); }), REGDB_E_CLASSNOTREG);
}

TEST_F(BackgroundTasks, FailToBeWalkedThroughOnRequest)
{
    auto const registration = Register(L"a", PushNotificationTrigger());
    for (auto const* const call :
         {L"BackgroundTaskRegistration.AllTasks", L"BackgroundTaskRegistration.AllTasks.First",
          L"BackgroundTaskRegistration.AllTasks.HasCurrent", L"BackgroundTaskRegistration.AllTasks.Current",
          L"BackgroundTaskRegistration.AllTasks.MoveNext", L"BackgroundTaskRegistration.AllTasks.Value",
          L"BackgroundTaskRegistration.Name"})
    {
        host.SetFault(std::wstring(call) + L" now 0x80004005 1");
        EXPECT_EQ(FailureOf([] { RegisteredNames(); }), E_FAIL);
    }
    host.SetFault(L"BackgroundTaskRegistration.AllTasks null 1");
    EXPECT_FALSE(BackgroundTaskRegistration::AllTasks());
    host.SetFault(L"BackgroundTaskRegistration.Unregister now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { registration.Unregister(true); }), E_FAIL);
    EXPECT_EQ(RegisteredNames(), std::vector<std::wstring>{L"a"});
}

TEST_F(BackgroundTasks, FailInTheAppOnRequest)
{
    Signal isDone;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        for (auto const* const member : {L"GetDeferral", L"Task", L"TriggerDetails", L"Canceled"})
        {
            host.SetFault(L"BackgroundTaskInstance." + std::wstring(member) + L" now 0x80004005 1");
        }
        EXPECT_EQ(FailureOf([&] { instance.GetDeferral(); }), E_FAIL);
        EXPECT_EQ(FailureOf([&] { instance.Task(); }), E_FAIL);
        EXPECT_EQ(FailureOf([&] { instance.TriggerDetails(); }), E_FAIL);
        EXPECT_EQ(FailureOf([&] { instance.Canceled([](auto&&...) {}); }), E_FAIL);
        host.SetFault(L"BackgroundTaskInstance.GetDeferral null 1");
        EXPECT_FALSE(instance.GetDeferral());
        host.SetFault(L"BackgroundTaskDeferral.Complete now 0x80004005 1");
        auto const deferral = instance.GetDeferral();
        EXPECT_EQ(FailureOf([&] { deferral.Complete(); }), E_FAIL);
        deferral.Complete();
        isDone.Set();
    };
    host.ActivateTask(L"Any");
    isDone.Wait();
    host.WaitForReport(L"task-completed");
}

TEST_F(BackgroundTasks, HaveAChannelThatLastsThirtyDays)
{
    auto const channel = NewChannel();
    EXPECT_TRUE(channel.Uri().starts_with(L"https://"));
    auto const lifetime = channel.ExpirationTime() - winrt::clock::now();
    EXPECT_GT(lifetime, std::chrono::hours(30 * 24 - 1));
    EXPECT_EQ(NewChannel().Uri(), channel.Uri());
    host.AdvanceClock(30 * day);
    EXPECT_NE(NewChannel().Uri(), channel.Uri());
}

TEST_F(BackgroundTasks, GetAnotherChannelAfterItsRevocation)
{
    auto const uri = NewChannel().Uri();
    host.RevokeChannel();
    EXPECT_NE(NewChannel().Uri(), uri);
}

TEST_F(BackgroundTasks, GetNoChannelOnRequest)
{
    constexpr wchar_t call[] = L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync ";
    constexpr auto noNetwork = static_cast<std::int32_t>(0x800704C6);
    auto const create = [] {
        return PushNotificationChannelManager::CreatePushNotificationChannelForApplicationAsync();
    };
    host.SetFault(std::wstring(call) + L"now 0x800704C6 1");
    EXPECT_EQ(FailureOf([&] { create(); }), noNetwork);
    host.SetFault(std::wstring(call) + L"completion 0x800704C6 1");
    EXPECT_EQ(FailureOf([&] { create().get(); }), noNetwork);
    host.SetFault(std::wstring(call) + L"cancelled 1");
    auto const cancelled = create();
    EXPECT_EQ(FailureOf([&] { cancelled.get(); }), static_cast<std::int32_t>(0x800704C7));
    host.SetFault(std::wstring(call) + L"never 1");
    EXPECT_EQ(create().Status(), winrt::Windows::Foundation::AsyncStatus::Started);
    host.SetFault(std::wstring(call) + L"null 1");
    EXPECT_FALSE(create());
    auto const channel = create().get();
    host.SetFault(L"PushNotificationChannel.Uri now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { channel.Uri(); }), E_FAIL);
}
