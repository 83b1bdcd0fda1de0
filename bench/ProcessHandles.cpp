#include "bench/ProcessHandles.h"

#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "simulator/base/HandleTable.h"

#include <algorithm>
#include <cstdint>

namespace bench
{

namespace
{

constexpr auto objectName = static_cast<OBJECT_INFORMATION_CLASS>(1);

// Both answers begin with a string; empty where there is no answer.
std::wstring Asked(HANDLE object, OBJECT_INFORMATION_CLASS question)
{
    std::vector<std::uint64_t> answer(512);
    auto const size = static_cast<ULONG>(answer.size() * sizeof answer[0]);
    if (NtQueryObject(object, question, answer.data(), size, nullptr) != 0)
    {
        return {};
    }
    auto const& text = *reinterpret_cast<UNICODE_STRING const*>(answer.data());
    return text.Buffer ? std::wstring(text.Buffer, text.Length / sizeof(wchar_t)) : std::wstring();
}

std::wstring Described(HANDLE process, HANDLE handle)
{
    HANDLE copy = nullptr;
    if (!DuplicateHandle(process, handle, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS))
    {
        return L"(cannot be looked at)";
    }
    sim::Handle const object(copy);
    auto const name = Asked(object.Get(), objectName);
    return Asked(object.Get(), ObjectTypeInformation) + (name.empty() ? L"" : L" " + name);
}

} // namespace

std::vector<std::wstring> HandlesOf(unsigned long processId)
{
    sim::Handle const process(OpenProcess(PROCESS_DUP_HANDLE, FALSE, processId));
    if (!process)
    {
        throw sim::Error(L"process " + std::to_wstring(processId) + L" does not run");
    }
    std::vector<std::wstring> handles;
    for (auto const& entry : sim::AllHandles())
    {
        if (entry.OwnerPid == processId)
        {
            auto* const handle = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(entry.HandleValue));
            handles.push_back(Described(process.Get(), handle));
        }
    }
    std::ranges::sort(handles);
    return handles;
}

} // namespace bench
