#include "bench/StartMeter.h"

#include "simulator/model/Activation.h"
#include "simulator/transport/Pipe.h"
#include "simulator/transport/PipeChannel.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>

namespace bench
{

namespace
{

using Clock = std::chrono::steady_clock;

[[noreturn]] void Fail(char const* what)
{
    std::fprintf(stderr, "start_bench: %s\n", what);
    std::exit(1);
}

// What happens at the other end while one app runs.
struct Run
{
    std::promise<Clock::time_point> constructed;
    std::promise<void> closed;
};

void Serve(std::shared_ptr<sim::PipeChannel> const& channel, Run& run)
{
    channel->Start({[channel, &run](sim::Message const& message) {
                        if (message.front() == L"hello-app")
                        {
                            channel->Send({L"welcome"});
                            sim::Message activate = {L"activate"};
                            auto const words = sim::Activation{L"1", sim::ActivationKind::Protocol, L"bench:"}.Words();
                            activate.insert(activate.end(), words.begin(), words.end());
                            channel->Send(activate);
                        }
                        else if (message.front() == L"taken")
                        {
                            run.constructed.set_value(Clock::now());
                        }
                    },
                    [&run] { run.closed.set_value(); }});
}

} // namespace

StartMeter::StartMeter(std::wstring const& folder) : m_device(folder) {}

double StartMeter::Measure(std::wstring const& executable, int starts)
{
    double total = 0;
    for (int start = 0; start < starts; ++start)
    {
        total += MeasureOne(executable);
    }
    return total / starts;
}

double StartMeter::MeasureOne(std::wstring const& executable)
{
    auto pipe = sim::MakePipe(m_device.PipeName());
    sim::Handle const connected(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED connecting{};
    connecting.hEvent = connected.Get();
    if (!pipe || ConnectNamedPipe(pipe.Get(), &connecting) || GetLastError() != ERROR_IO_PENDING)
    {
        Fail("the pipe cannot be had");
    }
    Run run;
    std::promise<unsigned long> ended;
    sim::ProcessRequest const request{executable,
                                      L"\"" + executable + L"\" -ServerName:App.Bench.mca",
                                      m_device.Home(),
                                      {{L"VELMO_SIM_HOME", m_device.Home()}, {L"TMP", m_device.Home()}}};

    auto const start = Clock::now();
    if (m_processes.Start(request, [&](auto, unsigned long code) { ended.set_value(code); }).error != 0)
    {
        Fail("an app does not start");
    }
    WaitForSingleObject(connected.Get(), INFINITE);
    Serve(sim::PipeChannel::Open(std::move(pipe)), run);
    auto const constructed = run.constructed.get_future().get();
    if (ended.get_future().get() != 0)
    {
        Fail("an app failed");
    }
    run.closed.get_future().wait();
    return std::chrono::duration<double, std::micro>(constructed - start).count();
}

} // namespace bench
