#pragma once
#include <windows.h>
#include <winrt/base.h>

namespace VelmoNotificationClient
{

// Failures of the platform come as hresult_error, but for E_OUTOFMEMORY, which is std::bad_alloc. Nothing else is
// thrown in here, so who guards against them catches everything.

// What the platform handed out. Throws hresult_error (E_POINTER) when that is null, where a call on it would end the
// process: it counts as the failure of the call that handed it out.
template <typename T>
T NotNull(T object)
{
    if (!object)
    {
        throw winrt::hresult_error(E_POINTER);
    }
    return object;
}

} // namespace VelmoNotificationClient
