#include "tests/unit/doctor/LongLog.h"

#include "tests/support/Files.h"
#include "tests/unit/doctor/LogText.h"

#include <stdexcept>
#include <windows.h>

#include <psapi.h> // needs the former

namespace test
{

namespace
{

constexpr std::size_t fileBytes = std::size_t{15} * 1024 * 1024;

}

std::uint64_t WriteLongLog(std::wstring const& folder)
{
    std::wstring push;
    for (auto const* message :
         {L"Inside OnBackgroundActivated", L"Deferal to complete background task",
          L"Notification bkg thread invocation", L"Going to launch full trust app for new notification invocation ",
          L"Launch Done !! ", L"Service deferral complete"})
    {
        push += LogText(L"01/05/24 09:30:12:045", message) + L"\r\n";
    }
    auto const pushBytes = Utf16(push);
    auto content = Utf16(mark);
    std::uint64_t pushes = 0;
    for (; content.size() < fileBytes; ++pushes)
    {
        content += pushBytes;
    }
    for (std::size_t i = 0; i < longLogFiles; ++i)
    {
        WriteBytes(folder + L"\\KZEB " + std::to_wstring(i) + L".log", content);
    }
    return pushes;
}

std::size_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    return K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)
               ? counters.PeakWorkingSetSize
               : throw std::runtime_error("the memory cannot be measured");
}

} // namespace test
