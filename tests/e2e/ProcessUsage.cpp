#include "tests/e2e/ProcessUsage.h"

#include "simulator/base/Handle.h"
#include "simulator/base/HandleTable.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <psapi.h>
#include <vector>

namespace test
{

namespace
{

// The number of the type differs from system to system.
BYTE EventType(std::vector<SYSTEM_HANDLE_ENTRY> const& handles, HANDLE event)
{
    auto const value = static_cast<USHORT>(reinterpret_cast<std::uintptr_t>(event));
    auto const found = std::ranges::find_if(handles, [&](SYSTEM_HANDLE_ENTRY const& entry) {
        return entry.OwnerPid == GetCurrentProcessId() && entry.HandleValue == value;
    });
    EXPECT_NE(found, handles.end());
    return found == handles.end() ? BYTE{0} : found->ObjectType;
}

} // namespace

ProcessUsage UsageOf(unsigned long processId)
{
    sim::Handle const event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    auto const handles = sim::AllHandles();
    auto const eventType = EventType(handles, event.Get());
    ProcessUsage usage{};
    for (auto const& entry : handles)
    {
        if (entry.OwnerPid == processId)
        {
            ++usage.handles;
            usage.events += entry.ObjectType == eventType ? 1 : 0;
        }
    }
    sim::Handle const process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    PROCESS_MEMORY_COUNTERS memory{};
    EXPECT_TRUE(K32GetProcessMemoryInfo(process.Get(), &memory, sizeof memory));
    usage.memory = memory.PagefileUsage; // the same as PrivateUsage, which Wine leaves at 0
    return usage;
}

} // namespace test
