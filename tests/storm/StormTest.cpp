#include "service/NotificationAppService.h"
#include "tests/flow/AppFlow.h"

#include <atomic>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace
{

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation::Collections;
using VelmoNotificationClient::NotificationAppService;

ValueSet Command(wchar_t const* command)
{
    ValueSet const request;
    request.Insert(L"Command", winrt::box_value(command));
    return request;
}

// A helper that connects, sends a request, and closes its connection, with or without waiting for the response. The
// request may fail: other helpers connect and close, and share the app's one connection.
void ComeAskAndGo(unsigned round)
try
{
    constexpr wchar_t const* commands[] = {L"UnregisterBackgroundTask", L"GetChannelUri", L"unknown"};
    sim::CallerScope const caller;
    AppServiceConnection const connection;
    connection.AppServiceName(sim::LocalDevice::appServiceName);
    connection.PackageFamilyName(sim::LocalDevice::familyName);
    connection.RequestReceived([](auto&&...) {});
    if (connection.OpenAsync().get() != AppServiceConnectionStatus::Success)
    {
        return;
    }
    auto const request = connection.SendMessageAsync(Command(commands[round % 3]));
    if (round % 2 == 0 && round % 3 != 2)
    {
        request.get();
    }
    connection.Close();
}
catch (winrt::hresult_error const&)
{
    // Ignored: the connection was cancelled meanwhile.
}

// Of connections that overlap only the newest is completed when it is cancelled; on a device with limits the others
// would have the app ended after a moment.
class Storm : public test::AppFlow
{
  protected:
    ~Storm() override
    {
        host.End();
        WaitForEnd();
        host.WaitUntilQuiet();
        NotificationAppService::appServiceConnection.Set(nullptr);
        NotificationAppService::serviceDeferral.Set(nullptr);
    }
};

TEST_F(Storm, OfConnectionsThatComeGoAndAreCanceledIsSurvived)
{
    constexpr unsigned rounds = 10'000;
    constexpr unsigned helpers = 2; // with many more the machine is busy with Wine's spinning locks alone
    Start();
    std::atomic<unsigned> round = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < helpers; ++i)
    {
        threads.emplace_back([&] {
            for (auto mine = ++round; mine <= rounds; mine = ++round)
            {
                ComeAskAndGo(mine);
                if (mine % 10 == 0)
                {
                    host.CancelTasks(0);
                }
            }
        });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    host.WaitUntilQuiet();
    EXPECT_FALSE(host.Failure().has_value());
    EXPECT_FALSE(host.HasExited());
    // The app serves the next helper as usual.
    sim::CallerScope const caller;
    AppServiceConnection const connection;
    connection.AppServiceName(sim::LocalDevice::appServiceName);
    connection.PackageFamilyName(sim::LocalDevice::familyName);
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Success);
    EXPECT_EQ(connection.SendMessageAsync(Command(L"UnregisterBackgroundTask")).get().Status(),
              AppServiceResponseStatus::Success);
    connection.Close();
}

} // namespace
