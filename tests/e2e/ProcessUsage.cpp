#include "tests/e2e/ProcessUsage.h"

#include "simulator/base/Handle.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <psapi.h>
#include <vector>
#include <winternl.h>

namespace test
{

namespace
{

// Of all processes. GetProcessHandleCount would do, but is always 0 in Wine.
std::vector<SYSTEM_HANDLE_ENTRY> AllHandles()
{
    constexpr auto tooSmall = static_cast<NTSTATUS>(0xC0000004); // STATUS_INFO_LENGTH_MISMATCH
    std::vector<std::uint64_t> buffer(1 << 13);
    auto const read = [&] {
        return NtQuerySystemInformation(SystemHandleInformation, buffer.data(),
                                        static_cast<ULONG>(buffer.size() * sizeof buffer[0]), nullptr);
    };
    auto status = read();
    while (status == tooSmall)
    {
        buffer.resize(buffer.size() * 2);
        status = read();
    }
    EXPECT_EQ(status, 0);
    auto const* const table = reinterpret_cast<SYSTEM_HANDLE_INFORMATION const*>(buffer.data());
    return {table->Handle, table->Handle + table->Count};
}

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
    auto const handles = AllHandles();
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
