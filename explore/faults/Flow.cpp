#include "explore/faults/Flow.h"

#include "explore/faults/Stage.h"
#include "explore/faults/model/Rules.h"
#include "tests/flow/RegisteredTask.h"

#include <algorithm>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Storage.h>

namespace explore::faults
{

namespace
{

// Escaped characters, which the log doubles.
constexpr wchar_t channelUri[] = L"https://channel.example/new%2F%41";

void StoreOldUri()
{
    using namespace winrt::Windows::Storage;
    ApplicationData::Current().LocalSettings().Values().Insert(L"CURI", winrt::box_value(L"{old}"));
}

void PrepareApp(Stage& stage)
{
    test::RegisterPushTask(L"PushNotificationBGTask");
    test::RegisterPushTask(L"Other");
    test::RegisterDailyTask(L"URITimerBGTask");
    StoreOldUri();
    stage.device.ReplaceChannel(channelUri);
    stage.Start();
    stage.AwaitStart();
}

void Connect(Stage& stage)
{
    stage.AddHelper().Open();
    stage.AwaitActivation(stage.Helpers().size());
    stage.Settle();
}

void PrepareService(Stage& stage)
{
    PrepareApp(stage);
    Connect(stage);
}

template <wchar_t const* command>
void PrepareRequest(Stage& stage)
{
    PrepareService(stage);
    stage.FirstHelper().Prepare(command);
}

void Ask(Stage& stage)
{
    stage.FirstHelper().Ask();
}

// The second one comes when the first one rests: it waits for an event, or for an answer of the helper.
void AskTwice(Stage& stage)
{
    stage.FirstHelper().Ask();
    stage.Rest();
    stage.LastHelper().Ask();
}

template <wchar_t const* task, sim::Trigger trigger>
void Activate(Stage& stage)
{
    stage.device.ActivateTask(task, trigger, L"payload");
    stage.AwaitActivation(1);
}

constexpr wchar_t getChannelUri[] = L"GetChannelUri";
constexpr wchar_t registerTasks[] = L"RegisterBackgroundTask";
constexpr wchar_t unregisterTasks[] = L"UnregisterBackgroundTask";
constexpr wchar_t exitZeb[] = L"ExitZEB";
constexpr wchar_t unknown[] = L"getchanneluri";
constexpr wchar_t pushTask[] = L"PushNotificationBGTask";
constexpr wchar_t timerTask[] = L"URITimerBGTask";
constexpr wchar_t otherTask[] = L"Other";

Scene Connected(std::size_t requests = 0, std::size_t helpers = 1)
{
    Scene scene;
    scene.isConnected = true;
    scene.requests = requests;
    scene.helpers = helpers;
    return scene;
}

Scene ActivatedFor(wchar_t const* task)
{
    Scene scene;
    scene.activation = task;
    return scene;
}

template <wchar_t const* command>
Flow Request(std::string_view name)
{
    return {name, PrepareRequest<command>, Ask, RequestReceived(command), Role::Handler, Connected(1), true};
}

template <wchar_t const* task, sim::Trigger trigger>
Flow Triggered(std::string_view name)
{
    return {name, PrepareApp, Activate<task, trigger>, BackgroundActivation(), Role::Override, ActivatedFor(task)};
}

std::vector<Flow> MakeFlows()
{
    return {
        {"start-up",
         [](Stage& stage) { stage.device.ReplaceChannel(channelUri); },
         [](Stage& stage) {
             stage.Start();
             stage.AwaitStart();
         },
         StartUp(),
         Role::Start,
         {.tasks = {}, .uri = {}}},
        {"user-launch", PrepareApp,
         [](Stage& stage) {
             stage.device.Launch();
             stage.AwaitActivation(1);
         },
         UserLaunch(), Role::Override},
        {"protocol", PrepareApp,
         [](Stage& stage) {
             stage.device.OpenUri(L"velmo-notification:");
             stage.AwaitActivation(1);
         },
         ProtocolLaunch(), Role::Override},
        Triggered<pushTask, sim::Trigger::Push>("push"),
        Triggered<timerTask, sim::Trigger::Timer>("timer"),
        Triggered<otherTask, sim::Trigger::Timer>("other-task"),
        {"connect", PrepareApp,
         [](Stage& stage) {
             stage.AddHelper().Open();
             stage.AwaitActivation(1);
         },
         BackgroundActivation(), Role::Override, Scene(), true},
        Request<getChannelUri>("get-channel-uri"),
        Request<registerTasks>("register"),
        Request<unregisterTasks>("unregister"),
        Request<exitZeb>("exit"),
        Request<unknown>("unknown-command"),
        // Replies go out to the second helper.
        {"two-helpers",
         [](Stage& stage) {
             PrepareRequest<unregisterTasks>(stage);
             Connect(stage);
         },
         Ask, RequestReceived(unregisterTasks), Role::Handler, Connected(1, 2), true},
        {"two-requests",
         [](Stage& stage) {
             PrepareRequest<registerTasks>(stage);
             stage.FirstHelper().Prepare(getChannelUri);
         },
         AskTwice, RequestReceived(registerTasks), Role::Handler, Connected(2), true, RequestReceived(getChannelUri)},
        {"two-helpers-ask",
         [](Stage& stage) {
             PrepareRequest<getChannelUri>(stage);
             Connect(stage);
             stage.LastHelper().Prepare(unregisterTasks);
         },
         AskTwice, RequestReceived(getChannelUri), Role::Handler, Connected(2, 2), true,
         RequestReceived(unregisterTasks)},
        {.name = "close",
         .prepare = PrepareService,
         .begin = [](Stage& stage) { stage.FirstHelper().Close(); },
         .rules = {},
         .scene = Connected(),
         .hasHelper = true,
         .handlers = {TaskCancelled(), ConnectionClosed()}},
        {.name = "cancel",
         .prepare = PrepareService,
         .begin = [](Stage& stage) { stage.device.CancelTasks(0); },
         .rules = {},
         .scene = Connected(),
         .hasHelper = true,
         .handlers = {TaskCancelled()},
         .closed = ConnectionClosed()},
    };
}

} // namespace

std::span<Flow const> Flows()
{
    static auto const flows = MakeFlows();
    return flows;
}

Flow const* FlowOf(std::string_view name)
{
    auto const flows = Flows();
    auto const found = std::ranges::find(flows, name, &Flow::name);
    return found == flows.end() ? nullptr : &*found;
}

} // namespace explore::faults
