// How long a push takes from the push service's word until the desktop component has been started, against a bare app
// that makes the same launch: real processes, each app on a device of its own.
#include "bench/Devices.h"
#include "bench/harness/Bench.h"
#include "simulator/base/Error.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"

#include <cstdio>

namespace
{

using Clock = std::chrono::steady_clock;

// A device that is on, with an app that pushes are sent to.
class Pushes
{
  public:
    // home: the device's folder.
    Pushes(std::wstring const& home, std::wstring const& simulator, std::wstring const& package)
        : m_broker(bench::FollowNewDevice(simulator, home, package))
    {
    }

    ~Pushes() { m_broker->Stop(); }

    void Launch() { m_broker->Ask(sim::LaunchApp{}); }

    void WaitFor(std::wstring_view kind)
    {
        for (;; WaitForSingleObject(m_broker->Arrived(), INFINITE))
        {
            while (auto const event = m_broker->NextEvent())
            {
                if (event->kind == kind)
                {
                    return;
                }
            }
        }
    }

    // Microseconds to the desktop component's start. Returns when the task is completed and the component has ended.
    double Push()
    {
        auto const start = Clock::now();
        m_broker->Ask(sim::Push{});
        WaitFor(L"desktop-started");
        std::chrono::duration<double, std::micro> const taken = Clock::now() - start;
        AwaitTheEndOfAPush();
        return taken.count();
    }

    double PushToNoProcess()
    {
        m_broker->Ask(sim::KillApp{});
        WaitFor(L"app-crashed"); // as a process that is ended from outside is booked
        return Push();
    }

  private:
    // In either order.
    void AwaitTheEndOfAPush()
    {
        auto completed = false, ended = false;
        while (!completed || !ended)
        {
            WaitForSingleObject(m_broker->Arrived(), INFINITE);
            while (auto const event = m_broker->NextEvent())
            {
                completed |= event->kind == L"task-completed";
                ended |= event->kind == L"desktop-exited";
            }
        }
    }

    std::unique_ptr<sim::BrokerClient> m_broker;
};

// A block of pushes.
template <typename Operation>
bench::Block Averaged(Operation push)
{
    return [push](int times) {
        double total = 0;
        for (int count = 0; count < times; ++count)
        {
            total += push();
        }
        return total / times;
    };
}

void CompareApps(bench::Bench& bench, Pushes& bare, Pushes& product)
{
    constexpr double limit = 1.05;
    bench.Compare({"push to the desktop component's start, the app runs",
                   {{"floor: a bare app", Averaged([&] { return bare.Push(); })},
                    {"the product", Averaged([&] { return product.Push(); }), limit}},
                   1});
    bench.Compare({"push to the desktop component's start, the app does not run",
                   {{"floor: a bare app", Averaged([&] { return bare.PushToNoProcess(); })},
                    {"the product", Averaged([&] { return product.PushToNoProcess(); }), limit}},
                   1});
}

} // namespace

int wmain(int count, wchar_t** arguments)
try
{
    if (count != 6)
    {
        std::printf(
            "activation_bench DEVICE SIM HELPER PACKAGE BARE_PACKAGE: DEVICE begins the names of two folders\n");
        return 2;
    }
    std::wstring const home = arguments[1], simulator = arguments[2], helper = arguments[3], package = arguments[4],
                       barePackage = arguments[5];
    Pushes bare(home + L"-bare", simulator, barePackage);
    bare.Launch();
    bare.WaitFor(L"task-registered");
    Pushes product(home, simulator, package);
    auto const command = L"\"" + helper + L"\" register";
    bench::AwaitSuccess(sim::StartProcess({helper, command, package, {{L"VELMO_SIM_HOME", home}}}), command);
    product.WaitFor(L"task-completed"); // the helper's own
    bench::Bench bench("activation", 2);
    CompareApps(bench, bare, product);
    return bench.Conclude();
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "activation_bench: %s\n", sim::ToUtf8(error.Message()).c_str());
    return 1;
}
