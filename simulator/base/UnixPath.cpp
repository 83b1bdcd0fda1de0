#include "simulator/base/UnixPath.h"

#include "simulator/base/Text.h"

#include <bit>
#include <memory>
#include <windows.h>

namespace sim
{

namespace
{

// Exported by Wine only; null elsewhere.
template <typename Function>
Function* WineFunction(char const* name)
{
    return std::bit_cast<Function*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name));
}

struct FreeHeap
{
    void operator()(void* memory) const noexcept { HeapFree(GetProcessHeap(), 0, memory); }
};

template <typename Character>
using HeapText = std::unique_ptr<Character, FreeHeap>;

} // namespace

std::string UnixPath(std::wstring const& path)
{
    auto* const convert = WineFunction<char*(wchar_t const*)>("wine_get_unix_file_name");
    HeapText<char> const text(convert ? convert(path.c_str()) : nullptr);
    return text ? std::string(text.get()) : ToUtf8(path);
}

std::wstring WindowsPath(std::wstring const& path)
{
    auto* const convert =
        path.starts_with(L'/') ? WineFunction<wchar_t*(char const*)>("wine_get_dos_file_name") : nullptr;
    HeapText<wchar_t> const text(convert ? convert(ToUtf8(path).c_str()) : nullptr);
    return text ? std::wstring(text.get()) : path;
}

} // namespace sim
