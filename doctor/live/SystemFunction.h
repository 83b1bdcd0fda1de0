#pragma once
#include <bit>
#include <windows.h>

namespace doctor
{

// A function that not every system has; null where it is missing. The library stays loaded. Type: that of the function.
template <typename Type>
Type* SystemFunction(wchar_t const* library, char const* name) noexcept
{
    auto* const module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module != nullptr ? std::bit_cast<Type*>(GetProcAddress(module, name)) : nullptr;
}

} // namespace doctor
