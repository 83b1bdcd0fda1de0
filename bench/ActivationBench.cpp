// How long a push takes from the push service's word until the app's background task is completed, which it is when the
// desktop component has been started: real processes on a device of their own.
#include "bench/Harness.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/broker/WindowsProcessStarter.h"
#include "simulator/client/BrokerClient.h"

namespace
{

using Clock = std::chrono::steady_clock;

void Run(std::wstring const& program, std::wstring const& arguments, std::wstring const& folder)
{
    unsigned long result = 0;
    sim::Handle const ended(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    sim::WindowsProcessStarter processes;
    processes.Listen([&](auto, unsigned long exitCode) {
        result = exitCode;
        SetEvent(ended.Get());
    });
    auto const started = processes.Start({program, L"\"" + program + L"\" " + arguments, folder, {}});
    if (started.error == 0)
    {
        WaitForSingleObject(ended.Get(), INFINITE);
    }
    if (started.error != 0 || result != 0)
    {
        throw sim::Error(program + L" " + arguments + L" failed");
    }
}

class Pushes
{
  public:
    // The device is on.
    explicit Pushes(sim::Device const& device) : m_broker(sim::BrokerClient::Connect(device)) { m_broker->Follow(); }

    ~Pushes() { m_broker->Stop(); }

    // Microseconds until the task is completed.
    double Push()
    {
        auto const start = Clock::now();
        m_broker->Ask(sim::Push{});
        WaitFor(L"task-completed");
        std::chrono::duration<double, std::micro> const taken = Clock::now() - start;
        return taken.count();
    }

    double PushToNoProcess()
    {
        m_broker->Ask(sim::KillApp{});
        WaitFor(L"app-crashed"); // as a process that is ended from outside is booked
        return Push();
    }

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

  private:
    std::unique_ptr<sim::BrokerClient> m_broker;
};

int Repetitions()
{
    return bench::IsShort() ? 2 : 20;
}

template <typename Operation>
void Show(char const* name, Operation operation)
{
    std::vector<double> times;
    for (int repetition = 0; repetition < Repetitions(); ++repetition)
    {
        times.push_back(operation());
    }
    auto const spread = bench::SpreadOf(times);
    std::printf("  %-34s %9.0f %9.0f - %-9.0f\n", name, spread.median, spread.low, spread.high);
}

} // namespace

int wmain(int count, wchar_t** arguments)
try
{
    if (count != 5)
    {
        std::printf("activation_bench DEVICE SIM HELPER PACKAGE: DEVICE is a folder that is made\n");
        return 2;
    }
    std::wstring const home = arguments[1], simulator = arguments[2], helper = arguments[3], package = arguments[4];
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", home.c_str());
    Run(simulator, L"register \"" + package + L"\"", package);
    Pushes pushes{sim::Device(home)};
    Run(helper, L"register", package);
    pushes.WaitFor(L"task-completed"); // the helper's own
    std::printf("\npush to the task's completion, processes and all, %d times\n  %-34s %9s %21s\n", Repetitions(), "",
                "median us", "middle half      ");
    Show("to a running app", [&] { return pushes.Push(); });
    Show("to an app that does not run", [&] { return pushes.PushToNoProcess(); });
    return bench::Conclude("activation", true);
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "activation_bench: %s\n", sim::ToUtf8(error.Message()).c_str());
    return 1;
}
