#pragma once
#include <cstdint>

// Exported by the executable, which the package's manifest names as the in-process server of the page and of the
// type-information provider: the platform finds the module in its own process by that path and calls this for either
// class. There is no DllCanUnloadNow: an executable stays.
//
// classId: an HSTRING. Gives the class's IActivationFactory with a reference of the caller's; null and
// CLASS_E_CLASSNOTAVAILABLE for any other name. Any thread.
extern "C" __declspec(dllexport) std::int32_t __stdcall DllGetActivationFactory(void* classId, void** factory) noexcept;
