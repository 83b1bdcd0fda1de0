#include "simulator/protocol/BrokerPipe.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/protocol/Pipe.h"

#include <windows.h>

namespace sim
{

namespace
{

// Returns when the broker serves the device, or has ended since another one does.
void StartBroker(Device const& device, std::wstring const& program)
{
    constexpr DWORD limitMilliseconds = 60'000;
    MakeFolder(device.Home());
    Handle const ready(CreateEventW(nullptr, TRUE, FALSE, device.ReadyEventName().c_str()));
    auto const process = StartProcess(program, {L"broker"});
    HANDLE const either[] = {ready.Get(), process.Get()};
    WaitForMultipleObjects(ARRAYSIZE(either), either, FALSE, limitMilliseconds);
}

} // namespace

Handle FindBroker(Device const& device)
{
    auto pipe = ConnectPipe(device.PipeName());
    if (!pipe && GetLastError() == ERROR_SEM_TIMEOUT)
    {
        throw Error(HungText(0));
    }
    return pipe;
}

Handle NeedBroker(Device const& device, std::wstring const& program)
{
    // A broker found or started may be about to be switched off; the next one is not.
    constexpr int attempts = 5;
    auto pipe = FindBroker(device);
    for (int attempt = 0; !pipe && attempt < attempts; ++attempt)
    {
        StartBroker(device, program);
        pipe = FindBroker(device);
    }
    return pipe ? std::move(pipe) : throw Error(L"no broker starts for the device " + device.Home());
}

std::wstring HungText(unsigned long id)
{
    auto const process = id == 0 ? std::wstring() : L" (process " + std::to_wstring(id) + L")";
    return L"the device's broker" + process + L" has not answered for " + std::to_wstring(hungAfter / 1'000) +
           L" s: end its process, and the next command starts another one";
}

} // namespace sim
