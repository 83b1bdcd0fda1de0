#include "bench/StartMeter.h"

#include "simulator/model/Activation.h"
#include "simulator/transport/Pipe.h"
#include "simulator/transport/PipeChannel.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

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

sim::Handle NewEvent()
{
    return sim::Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

// What one app does, as its platform sees it.
struct Run
{
    sim::Handle connected = NewEvent();
    Clock::time_point constructed;
    bool wasConstructed = false;
    sim::Handle closed = NewEvent(); // the last message has come
    unsigned long exitCode = 0;
    sim::Handle ended = NewEvent();
};

// folder: that of the app's package, for the app.
void Serve(std::shared_ptr<sim::PipeChannel> const& channel, std::wstring const& folder, Run& run)
{
    channel->Start({[channel, folder, &run](sim::Message const& message) {
                        if (message.front() == L"hello-app")
                        {
                            channel->Send({L"welcome", L"Bench_1", folder});
                            sim::Message activate = {L"activate"};
                            auto const words = sim::Activation{L"1", sim::ActivationKind::Protocol, L"bench:"}.Words();
                            activate.insert(activate.end(), words.begin(), words.end());
                            channel->Send(activate);
                        }
                        else if (message.front() == L"taken")
                        {
                            run.constructed = Clock::now();
                            run.wasConstructed = true;
                        }
                    },
                    [&run] { SetEvent(run.closed.Get()); }});
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
    Run run;
    auto pipe = sim::MakePipe(m_device.PipeName());
    OVERLAPPED connecting{};
    connecting.hEvent = run.connected.Get();
    if (!pipe || ConnectNamedPipe(pipe.Get(), &connecting) || GetLastError() != ERROR_IO_PENDING)
    {
        Fail("the pipe cannot be had");
    }
    sim::ProcessRequest const request{executable,
                                      L"\"" + executable + L"\" -ServerName:App.Bench.mca",
                                      m_device.Home(),
                                      {{L"VELMO_SIM_HOME", m_device.Home()}, {L"TMP", m_device.Home()}}};
    auto const start = Clock::now();
    auto const started = m_processes.Start(request, [&](auto, unsigned long exitCode) {
        run.exitCode = exitCode;
        SetEvent(run.ended.Get());
    });
    if (started.error != 0)
    {
        Fail("an app does not start");
    }
    HANDLE const either[] = {run.connected.Get(), run.ended.Get()};
    if (WaitForMultipleObjects(2, either, FALSE, INFINITE) != WAIT_OBJECT_0)
    {
        Fail("an app ended without speaking to its platform");
    }
    Serve(sim::PipeChannel::Open(std::move(pipe)), m_device.Home(), run);
    WaitForSingleObject(run.closed.Get(), INFINITE);
    WaitForSingleObject(run.ended.Get(), INFINITE);
    if (run.exitCode != 0 || !run.wasConstructed)
    {
        Fail("an app failed");
    }
    return std::chrono::duration<double, std::micro>(run.constructed - start).count();
}

} // namespace bench
