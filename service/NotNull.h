#pragma once
#include <windows.h>
#include <winrt/base.h>

namespace VelmoNotificationClient
{

// An object that the platform handed out. Throws hresult_error (E_POINTER) when it is null: a call on it would end the
// process, so null counts as a failure of the call that returned it.
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
