#pragma once
#include "simulator/runtime/Namespaces.h"

#include <string>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The factory of a runtime class that the app's own package declares (windows.activatableClass.inProcessServer), from
// the module that its manifest names; one that is already loaded, such as the app's executable, is used as it is.
//
// Throws hresult_error: class not registered (0x80040154) for a class that is not declared, the system's error when the
// module cannot be loaded or does not export DllGetActivationFactory, or what that gave.
IActivationFactory GetPackagedFactory(std::wstring const& className);

} // namespace sim
