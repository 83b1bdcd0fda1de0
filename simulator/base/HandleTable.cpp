#include "simulator/base/HandleTable.h"

#include "simulator/base/Error.h"

#include <cstdint>

namespace sim
{

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
    if (status != 0)
    {
        throw Error(L"the system does not tell its handles: status " + std::to_wstring(status));
    }
    auto const* const table = reinterpret_cast<SYSTEM_HANDLE_INFORMATION const*>(buffer.data());
    return {table->Handle, table->Handle + table->Count};
}

} // namespace sim
