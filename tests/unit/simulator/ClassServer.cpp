#include <windows.h>
#include <winrt/Windows.Foundation.h>

using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

namespace
{

struct Thing : winrt::implements<Thing, IInspectable>
{
    winrt::hstring GetRuntimeClassName() const override { return L"Tests.Thing"; }
};

struct ThingFactory : winrt::implements<ThingFactory, IActivationFactory>
{
    IInspectable ActivateInstance() const { return winrt::make<Thing>(); }
};

} // namespace

// A module with one class, for tests.
extern "C" __declspec(dllexport) std::int32_t __stdcall DllGetActivationFactory(void* classId, void** factory) noexcept
{
    *factory = nullptr;
    winrt::hstring className;
    winrt::copy_from_abi(className, classId);
    if (className != L"Tests.Thing")
    {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    *factory = winrt::detach_abi(winrt::make<ThingFactory>());
    return S_OK;
}
