#include "tests/native/FaultsFlows.h"

#include "explore/faults/Plays.h"
#include "explore/faults/model/Rules.h"

using namespace explore::faults;

namespace test
{

namespace
{

Scene Connected(std::size_t requests)
{
    Scene scene;
    scene.isConnected = true;
    scene.requests = requests;
    return scene;
}

} // namespace

Flow StartUpFlow()
{
    return {.name = "start", .prepare = {}, .begin = {}, .rules = StartUp(), .role = Role::Start};
}

Flow LaunchFlow()
{
    return {.name = "launch", .prepare = {}, .begin = {}, .rules = UserLaunch(), .role = Role::Override};
}

Flow PushFlow()
{
    Scene scene;
    scene.activation = L"PushNotificationBGTask";
    return {.name = "push",
            .prepare = {},
            .begin = {},
            .rules = BackgroundActivation(),
            .role = Role::Override,
            .scene = scene};
}

Flow RequestFlow(std::wstring_view command)
{
    return {.name = "request",
            .prepare = {},
            .begin = {},
            .rules = RequestReceived(command),
            .scene = Connected(1),
            .hasHelper = true};
}

Flow TwoRequestsFlow(std::wstring_view first, std::wstring_view second)
{
    auto flow = RequestFlow(first);
    flow.scene = Connected(2);
    flow.second = RequestReceived(second);
    return flow;
}

Flow CloseFlow()
{
    return {.name = "close",
            .prepare = {},
            .begin = {},
            .rules = {},
            .scene = Connected(0),
            .hasHelper = true,
            .handlers = {TaskCancelled(), ConnectionClosed()}};
}

Flow CancelFlow()
{
    auto flow = CloseFlow();
    flow.name = "cancel";
    flow.handlers.pop_back();
    flow.closed = ConnectionClosed();
    return flow;
}

Outcome Reckoned(Flow const& flow, std::vector<WayAt> const& deviations)
{
    Reckoning reckoning(flow.scene, deviations);
    reckoning.Run(flow.rules, flow.role, flow.second);
    return reckoning.Result();
}

std::size_t NumberOf(Flow const& flow, std::wstring_view call, std::size_t n)
{
    auto const calls = CallsOf(flow);
    for (std::size_t number = 0; number < calls.size(); ++number)
    {
        if (calls[number] == call && --n == 0)
        {
            return number;
        }
    }
    return calls.size();
}

} // namespace test
