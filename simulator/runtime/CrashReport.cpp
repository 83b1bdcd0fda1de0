#include "simulator/runtime/CrashReport.h"

#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <windows.h>

namespace sim
{

namespace
{

constexpr int mostFrames = 24;

// Set once; they stay until the process ends.
wchar_t const* g_file = nullptr;
LPTOP_LEVEL_EXCEPTION_FILTER g_next = nullptr;

bool IsOnStack(DWORD64 address)
{
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    return address >= low && address + sizeof(DWORD64) <= high;
}

// Unwinds to the caller; false when none is found.
bool Unwind(CONTEXT& context)
{
    DWORD64 base = 0;
    auto* const function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
    if (!IsOnStack(context.Rsp))
    {
        return false;
    }
    if (!function) // its return address is all that it has on the stack
    {
        context.Rip = *std::bit_cast<DWORD64 const*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
        return context.Rip != 0;
    }
    void* handlerData = nullptr;
    DWORD64 frame = 0;
    RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handlerData, &frame, nullptr);
    return context.Rip != 0;
}

std::string PlaceOf(DWORD64 address)
{
    MEMORY_BASIC_INFORMATION memory = {};
    VirtualQuery(std::bit_cast<void const*>(address), &memory, sizeof memory);
    if (memory.Type != MEM_IMAGE)
    {
        return "unknown";
    }
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(static_cast<HMODULE>(memory.AllocationBase), path, MAX_PATH);
    std::wstring place = path;
    place.erase(0, place.find_last_of(L'\\') + 1);
    place += L'+';
    place += Hex(static_cast<std::uint32_t>(address - reinterpret_cast<DWORD64>(memory.AllocationBase)));
    return ToUtf8(place);
}

// Only the first crash: a later one may be this function's own.
void Report(CONTEXT context, bool isCall)
{
    static std::atomic<bool> isReported = false;
    if (isReported.exchange(true))
    {
        return;
    }
    // A call is what lies before its return address.
    auto places = PlaceOf(context.Rip - (isCall ? 1 : 0));
    for (auto frames = 1; frames < mostFrames && Unwind(context); ++frames)
    {
        places += ' ';
        places += PlaceOf(context.Rip - 1);
    }
    Handle const file(CreateFileW(g_file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), places.data(), static_cast<DWORD>(places.size()), &written, nullptr);
}

LONG WINAPI OnUnhandledException(EXCEPTION_POINTERS* exception)
{
    // The C++ runtime's: it lets its own exceptions go on, to std::terminate.
    auto const result = g_next ? g_next(exception) : EXCEPTION_CONTINUE_SEARCH;
    if (result != EXCEPTION_CONTINUE_EXECUTION)
    {
        Report(*exception->ContextRecord, false);
    }
    return result;
}

void WINAPI OnFailFast(EXCEPTION_RECORD* record, CONTEXT* context, DWORD flags)
{
    CONTEXT caller;
    RtlCaptureContext(&caller);
    Unwind(caller);
    context ? Report(*context, false) : Report(caller, true);
    RaiseFailFastException(record, context, flags);
}

// The object at an offset of the program's image.
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

// Replaces it among the imports of one module: a list of names, and beside it one of addresses.
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

// From now on this process's program calls the replacement where it imports a function of that name; its modules do
// not. Nothing happens when the program does not import it.
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

} // namespace

void ReportCrashes(std::wstring const& file)
{
    g_file = (new std::wstring(file))->c_str();
    g_next = SetUnhandledExceptionFilter(OnUnhandledException);
    // It calls no exception filter.
    ReplaceImport("RaiseFailFastException", reinterpret_cast<void*>(OnFailFast));
}

} // namespace sim
