#include "simulator/runtime/ReplaceImport.h"

#include <cstddef>
#include <cstring>
#include <windows.h>

namespace sim
{

namespace
{

// What lies at an offset of the program in memory.
template <typename T>
T* At(ULONGLONG offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(GetModuleHandleW(nullptr)) + offset);
}

void Replace(ULONGLONG& slot, void* replacement)
{
    DWORD protection = 0;
    if (VirtualProtect(&slot, sizeof slot, PAGE_READWRITE, &protection))
    {
        slot = reinterpret_cast<ULONGLONG>(replacement);
        VirtualProtect(&slot, sizeof slot, protection, &protection);
    }
}

// Of one imported module: the names, and beside them the slots with the addresses.
void ReplaceIn(IMAGE_IMPORT_DESCRIPTOR const& module, char const* name, void* replacement)
{
    auto const* lookup = At<IMAGE_THUNK_DATA>(module.OriginalFirstThunk);
    auto* slot = At<IMAGE_THUNK_DATA>(module.FirstThunk);
    for (; lookup->u1.AddressOfData != 0; ++lookup, ++slot)
    {
        auto const isNamed = !IMAGE_SNAP_BY_ORDINAL(lookup->u1.Ordinal);
        if (isNamed && std::strcmp(At<IMAGE_IMPORT_BY_NAME>(lookup->u1.AddressOfData)->Name, name) == 0)
        {
            Replace(slot->u1.Function, replacement);
        }
    }
}

} // namespace

void ReplaceImport(char const* name, void* replacement)
{
    auto const& headers = *At<IMAGE_NT_HEADERS>(static_cast<ULONGLONG>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    auto const imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (imports == 0)
    {
        return;
    }
    for (auto const* module = At<IMAGE_IMPORT_DESCRIPTOR>(imports); module->Name != 0; ++module)
    {
        ReplaceIn(*module, name, replacement);
    }
}

} // namespace sim
