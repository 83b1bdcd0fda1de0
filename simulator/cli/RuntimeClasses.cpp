#include "simulator/cli/RuntimeClasses.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/runtime/ClassNames.h"

#include <windows.h>

namespace sim
{

namespace
{

// The system's registry of classes, which Wine's RoGetActivationFactory reads.
constexpr wchar_t classesKey[] = L"Software\\Microsoft\\WindowsRuntime\\ActivatableClassId\\";

} // namespace

void InstallRuntimeClasses()
{
    auto const library = ParentOf(ProgramPath()) + L"\\VelmoPlatform.dll";
    if (!FileExists(library))
    {
        throw Error(L"there is no " + library + L": build it first");
    }
    for (auto const* name : runtimeClassNames)
    {
        auto const error =
            RegSetKeyValueW(HKEY_LOCAL_MACHINE, (std::wstring(classesKey) + name).c_str(), L"DllPath", REG_SZ,
                            library.c_str(), static_cast<DWORD>((library.size() + 1) * sizeof(wchar_t)));
        if (error != ERROR_SUCCESS)
        {
            throw Error(std::wstring(L"cannot register the class ") + name + L": " +
                        SystemMessage(static_cast<unsigned long>(error)));
        }
    }
}

} // namespace sim
