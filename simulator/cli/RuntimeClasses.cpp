#include "simulator/cli/RuntimeClasses.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"

#include <bit>
#include <windows.h>

namespace sim
{

void InstallRuntimeClasses()
{
    auto const library = ParentOf(ProgramPath()) + L"\\VelmoPlatform.dll";
    if (!FileExists(library))
    {
        throw Error(L"there is no " + library + L": build it first");
    }
    auto* const module = LoadLibraryW(library.c_str());
    auto const entry = module ? GetProcAddress(module, "DllRegisterServer") : nullptr;
    if (!entry)
    {
        throw Error(L"cannot load " + library + L": " + SystemMessage(GetLastError()));
    }
    if (auto const result = std::bit_cast<HRESULT(__stdcall*)()>(entry)(); result < 0)
    {
        throw Error(L"cannot register the classes of " + library + L": " +
                    SystemMessage(static_cast<unsigned long>(result)));
    }
}

} // namespace sim
