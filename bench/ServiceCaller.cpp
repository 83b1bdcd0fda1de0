#include "bench/ServiceCaller.h"

#include "service/Messages.h"
#include "simulator/testing/LocalDevice.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;

namespace bench
{

namespace
{

namespace Messages = VelmoNotificationClient::Messages;

void Require(bool isSo, char const* what)
{
    if (!isSo)
    {
        std::fprintf(stderr, "service_bench: %s\n", what);
        std::exit(1);
    }
}

} // namespace

ServiceCaller::ServiceCaller()
{
    m_request.Insert(Messages::commandKey, winrt::box_value(Messages::getChannelUri));
    m_connection.RequestReceived([this](auto&&, AppServiceRequestReceivedEventArgs const& args) {
        Require(args.Request().Message().HasKey(Messages::newCuriKey), "a message lacks the URI");
        SetEvent(m_arrived.Get());
    });
    Require(m_connection.OpenAsync().get() == AppServiceConnectionStatus::Success, "no connection");
}

// Of another process than the app's.
ServiceCaller::Connection ServiceCaller::NewConnection()
{
    sim::CallerScope const caller;
    Connection connection;
    connection.AppServiceName(sim::LocalDevice::appServiceName);
    connection.PackageFamilyName(sim::LocalDevice::familyName);
    return connection;
}

double ServiceCaller::RoundTrip() const
{
    using Clock = std::chrono::steady_clock;
    auto const start = Clock::now();
    auto const request = m_connection.SendMessageAsync(m_request);
    WaitForSingleObject(m_arrived.Get(), INFINITE);
    std::chrono::duration<double, std::micro> const taken = Clock::now() - start;
    Require(request.get().Status() == AppServiceResponseStatus::Success, "a request fails");
    return taken.count();
}

} // namespace bench
