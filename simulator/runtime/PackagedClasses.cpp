#include "simulator/runtime/PackagedClasses.h"

#include "simulator/base/Error.h"
#include "simulator/package/Manifest.h"
#include "simulator/runtime/Runtime.h"

#include <bit>
#include <windows.h>

namespace sim
{

namespace
{

using GetActivationFactoryFunction = std::int32_t(__stdcall*)(void* classId, void** factory);

// The module stays loaded: it has been asked for a class, and nothing asks whether it may go.
GetActivationFactoryFunction EntryOf(std::wstring const& path)
{
    auto* const module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    auto const entry = module ? GetProcAddress(module, "DllGetActivationFactory") : nullptr;
    return entry ? std::bit_cast<GetActivationFactoryFunction>(entry) : (winrt::throw_last_error(), nullptr);
}

Manifest ManifestIn(std::wstring const& folder)
try
{
    return ReadManifest(folder + L"\\AppxManifest.xml");
}
catch (Error const& error)
{
    throw winrt::hresult_error(REGDB_E_CLASSNOTREG, error.Message());
}

} // namespace

IActivationFactory GetPackagedFactory(std::wstring const& className)
{
    auto const folder = CurrentHost().PackageFolder();
    auto const manifest = ManifestIn(folder);
    auto const* const server = manifest.InProcessServerOf(className);
    if (!server)
    {
        throw winrt::hresult_class_not_registered();
    }
    auto const getFactory = EntryOf(folder + L"\\" + server->path);
    winrt::hstring const classId(className);
    IActivationFactory factory;
    winrt::check_hresult(getFactory(winrt::get_abi(classId), winrt::put_abi(factory)));
    return factory;
}

} // namespace sim
