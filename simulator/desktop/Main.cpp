#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Device.h"

#include <windows.h>

// Stands in for the suite's desktop component: leaves word of what it was started with, as it saw it itself, in the
// device, and ends.
int main()
try
{
    auto const device = sim::Device::FromEnvironment();
    wchar_t temporary[MAX_PATH + 1] = {};
    GetTempPathW(ARRAYSIZE(temporary), temporary);
    auto const report = device.DesktopReportFile(GetCurrentProcessId());
    sim::MakeFolder(sim::ParentOf(report));
    sim::WriteBytes(report, sim::ToUtf8(std::wstring(GetCommandLineW()) + L"\r\n" + temporary + L"\r\n"));
    return 0;
}
catch (sim::Error const&)
{
    return 1; // nobody to tell but through the exit code, which the device notes
}
