#pragma once
#include "simulator/runtime/CurrentHost.h"

#include <optional>
#include <string_view>
#include <winrt/base.h>

namespace sim
{

// For a call that takes place at once: throws hresult_error when it is to fail. True: it is to hand out null.
bool StruckByNull(std::wstring_view call);

// The same for a call that hands out nothing.
void ThrowIfStruck(std::wstring_view call);

// Whether the simulator has this class.
bool HasClass(std::wstring_view className) noexcept;

// The factory of a class, as DllGetActivationFactory gives it: null, and class not registered (0x80040154), for one
// that the simulator does not have.
std::int32_t GetFactory(std::wstring_view className, void** factory) noexcept;

} // namespace sim
