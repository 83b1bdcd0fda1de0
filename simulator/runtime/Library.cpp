#include "simulator/runtime/PipeHost.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/base.h>

#include <hstring.h>

namespace
{

// Made for the first class that is asked for; it stays until the process ends.
sim::Host& ProcessHost()
{
    static auto* const host = [] {
        auto* const made = new sim::PipeHost;
        sim::SetCurrentHost(made);
        return made;
    }();
    return *host;
}

} // namespace

// What the platform calls in the DLL that is registered for a runtime class. There is no DllCanUnloadNow: it stays.
extern "C" __declspec(dllexport) HRESULT __stdcall DllGetActivationFactory(HSTRING classId, void** factory)
try
{
    *factory = nullptr;
    ProcessHost();
    UINT32 length = 0;
    auto const* const name = WindowsGetStringRawBuffer(classId, &length);
    return sim::GetFactory({name, length}, factory);
}
catch (...)
{
    return winrt::to_hresult();
}
