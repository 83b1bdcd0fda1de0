#include "simulator/base/Process.h"
#include "simulator/runtime/CrashReport.h"
#include "simulator/runtime/ProcessHost.h"
#include "simulator/runtime/Runtime.h"

#include <windows.h>
#include <winrt/base.h>

#include <hstring.h>

namespace
{

// An exploration may look at the app's process from within, with a library of its own.
void LoadExploration()
{
    if (auto const library = sim::EnvironmentValue(L"VELMO_SIM_LOAD"))
    {
        winrt::check_bool(LoadLibraryW(library->c_str()) != nullptr);
    }
}

// Made for the first class that is asked for; it stays until the process ends.
sim::Host& ProcessHost()
{
    static auto const host = [] {
        auto made = sim::ProcessHost::Connected();
        sim::SetProcessHost(made);
        if (made->IsApp())
        {
            sim::ReportCrashes(sim::Device::FromEnvironment().CrashFile(GetCurrentProcessId()));
            LoadExploration();
        }
        return made;
    }();
    return *host;
}

// What a desktop program without a package may use: values, and the calling end of app services.
bool NeedsNoPackage(std::wstring_view className)
{
    return className.starts_with(L"Windows.Foundation.") ||
           className == L"Windows.ApplicationModel.AppService.AppServiceConnection";
}

} // namespace

// What the platform calls in the DLL that is registered for a runtime class. There is no DllCanUnloadNow: it stays.
extern "C" __declspec(dllexport) HRESULT __stdcall DllGetActivationFactory(HSTRING classId, void** factory)
try
{
    *factory = nullptr;
    std::wstring_view const name = reinterpret_cast<winrt::hstring const&>(classId);
    auto const isServed = ProcessHost().IsApp() || NeedsNoPackage(name);
    return isServed ? sim::GetFactory(name, factory) : HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE);
}
catch (...)
{
    return winrt::to_hresult();
}

// Registers this library for its classes in the platform's list, where Wine's RoGetActivationFactory looks.
extern "C" __declspec(dllexport) HRESULT __stdcall DllRegisterServer()
try
{
    auto const path = sim::RuntimeModulePath();
    auto const size = static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t));
    for (auto const name : sim::ClassNames())
    {
        auto const key = L"Software\\Microsoft\\WindowsRuntime\\ActivatableClassId\\" + std::wstring(name);
        auto const error = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"DllPath", REG_SZ, path.c_str(), size);
        winrt::check_hresult(HRESULT_FROM_WIN32(static_cast<DWORD>(error)));
    }
    return S_OK;
}
catch (...)
{
    return winrt::to_hresult();
}
