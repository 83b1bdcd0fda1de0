// What the product's service costs a helper that asks for the channel's URI, against a service that answers at once,
// against the platform calls that it cannot do without, and against these with as many bare lines as it writes.
#include "app/SetUpLogging.h"
#include "bench/ServiceApp.h"
#include "bench/ServiceCaller.h"
#include "bench/harness/Bench.h"
#include "service/AppLogHook.h"
#include "service/NotificationAppService.h"
#include "simulator/testing/LocalDevice.h"

#include <thread>
#include <tuple>
#include <windows.h>

using VelmoNotificationClient::NotificationAppService;
using winrt::Windows::UI::Xaml::Application;

namespace
{

// The app and one caller for each of its services, in one process.
class Service
{
  public:
    ~Service()
    {
        m_host.WaitUntilQuiet();
        m_host.End();
        m_main.join();
        NotificationAppService::appServiceConnection.Set(nullptr);
        NotificationAppService::serviceDeferral.Set(nullptr);
    }

    // Round trips that nothing of the former one runs into. log: null for no lines.
    bench::Block Apart(bench::ServiceApp::Service service, zant::LogFunction log = nullptr)
    {
        return [this, service, log](int times) {
            UseLog(log);
            double total = 0;
            for (int count = 0; count < times; ++count)
            {
                total += m_callers[service].RoundTrip();
                m_host.WaitUntilQuiet();
            }
            return total / times;
        };
    }

    struct Series
    {
        double perSecond;
        double median; // microseconds of a round trip
        double p99;
    };

    // So many requests in a row.
    Series InARow(int times, bench::ServiceApp::Service service, zant::LogFunction log = nullptr)
    {
        UseLog(log);
        std::vector<double> trips;
        auto const each = bench::Timed([&] { trips.push_back(m_callers[service].RoundTrip()); })(times);
        std::ranges::sort(trips);
        return {1e6 / each, trips[trips.size() / 2], trips[trips.size() * 99 / 100]};
    }

  private:
    // The hook has no lock: nobody may be logging.
    void UseLog(zant::LogFunction log)
    {
        m_host.WaitUntilQuiet();
        g_appLogHook = log;
    }

    sim::LocalDevice m_host;
    std::thread m_main{[] { Application::Start([](auto&&) { winrt::make<bench::ServiceApp>(); }); }};
    bench::ServiceCaller m_callers[4]; // in the order of the services
};

void CompareServices(bench::Bench& bench, Service& service, zant::LogFunction log)
{
    using enum bench::ServiceApp::Service;
    constexpr int tripsPerBlock = 5;
    bench.Compare({"\"GetChannelUri\", request to message",
                   {{"floor: null service", service.Apart(Null)},
                    {"the same platform calls, plain", service.Apart(Plain)},
                    {"the product as it is", service.Apart(Product, log)}},
                   tripsPerBlock});
    bench.Compare({"\"GetChannelUri\" without lines",
                   {{"floor: the same platform calls, plain", service.Apart(Plain)},
                    {"the product without log lines", service.Apart(Product), 1.02}},
                   tripsPerBlock});
    bench.Compare({"\"GetChannelUri\" with its lines",
                   {{"floor: the same, and as many bare lines", service.Apart(PlainWithLines)},
                    {"the product as it is", service.Apart(Product, log), 1.03}},
                   tripsPerBlock});
}

void MeasureInARow(bench::Bench& bench, Service& service, zant::LogFunction log)
{
    using enum bench::ServiceApp::Service;
    auto const requests = bench::IsShort() ? 20 : 1'000;
    std::vector<bench::Figure> rows;
    auto const add = [&](std::string const& name, Service::Series const& series) {
        for (auto const& [what, value, unit] :
             {std::tuple(", per second", series.perSecond, ""), std::tuple(", median", series.median, "us"),
              std::tuple(", 99 of 100 within", series.p99, "us")})
        {
            rows.push_back({name + what, {value, value, value}, unit});
        }
    };
    add("null service", service.InARow(requests, Null));
    add("plain calls", service.InARow(requests, Plain));
    add("product, no lines", service.InARow(requests, Product));
    add("product", service.InARow(requests, Product, log));
    bench.Show(std::to_string(requests) + " requests in a row, each sent when the former one is completed", rows);
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 2)
    {
        std::printf("service_bench FOLDER: writes its log into FOLDER\n");
        return 2;
    }
    SetEnvironmentVariableW(L"TMP", arguments[1]);
    SetUpLogging();
    winrt::init_apartment();
    auto const log = g_appLogHook;
    Service service;
    bench::Bench bench("service", 3);
    CompareServices(bench, service, log);
    MeasureInARow(bench, service, log);
    return bench.Conclude();
}
