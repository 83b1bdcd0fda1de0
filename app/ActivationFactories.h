#pragma once
#include <cstdint>

// Exported by the executable, which the package manifest declares as the in-process server of the page and of the
// type-information provider: the platform finds the module in its own process by that path and calls this function for
// either class. There is no DllCanUnloadNow: an executable is never unloaded.
//
// classId: an HSTRING. Returns the class's IActivationFactory, owned by the caller; null and CLASS_E_CLASSNOTAVAILABLE
// for any other name. Any thread.
extern "C" __declspec(dllexport) std::int32_t __stdcall DllGetActivationFactory(void* classId, void** factory) noexcept;
