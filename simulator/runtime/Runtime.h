#pragma once
#include "simulator/runtime/CurrentHost.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <winrt/base.h>

namespace sim
{

// Applies the fault of a synchronous call: throws hresult_error when the call is to fail; returns true when it is to
// return null.
bool InjectFault(std::wstring_view call);

// The last part of a class's name.
constexpr std::wstring_view LastPart(std::wstring_view className)
{
    return className.substr(className.find_last_of(L'.') + 1);
}

// The name of a member, as faults name it.
template <typename Class>
std::wstring CallOf(std::wstring const& member)
{
    return std::wstring(LastPart(winrt::name_of<Class>())) + L"." + member;
}

// The classes that the simulator has.
std::vector<std::wstring_view> ClassNames();

// Whether the simulator has this class.
bool HasClass(std::wstring_view className) noexcept;

// The factory of a class, as DllGetActivationFactory gives it: null, and class not registered (0x80040154), for one
// that the simulator does not have.
std::int32_t GetFactory(std::wstring_view className, void** factory) noexcept;

} // namespace sim
