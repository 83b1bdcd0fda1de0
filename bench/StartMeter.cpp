#include "bench/StartMeter.h"

#include "simulator/broker/WindowsProcessStarter.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Messages.h"
#include "simulator/protocol/Pipe.h"
#include "simulator/protocol/PipeChannel.h"

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
    auto const answer = [channel](sim::ToProcess const& message) { channel->Send(sim::Encode(message)); };
    channel->Start({[answer, folder, &run](std::string_view bytes) {
                        auto const message = sim::Decode<sim::FromProcess>(bytes);
                        if (std::holds_alternative<sim::Hello>(message))
                        {
                            answer(sim::Welcome{L"Bench_1", folder});
                            answer(sim::Activate{{1, sim::ProtocolLaunch{L"bench:"}}});
                        }
                        else if (std::holds_alternative<sim::ActivationTaken>(message))
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
        Fail("the pipe cannot be made");
    }
    sim::ProcessRequest const request{executable,
                                      L"\"" + executable + L"\" -ServerName:App.Bench.mca",
                                      m_device.Home(),
                                      {{L"VELMO_SIM_HOME", m_device.Home()}, {L"TMP", m_device.Home()}}};
    auto const start = Clock::now();
    sim::WindowsProcessStarter processes;
    processes.Listen([&](auto, unsigned long exitCode) {
        run.exitCode = exitCode;
        SetEvent(run.ended.Get());
    });
    auto const started = processes.Start(request);
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
