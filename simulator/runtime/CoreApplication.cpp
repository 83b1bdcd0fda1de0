#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.ApplicationModel.Core.h>

namespace sim
{

namespace
{

struct CoreApplicationFactory : Implements<CoreApplicationFactory, IActivationFactory, AppModel::Core::ICoreApplication,
                                           AppModel::Core::ICoreApplicationExit>
{
    // Ends the app without Suspending. It returns: the app goes on until its main view's thread is free.
    void Exit() const
    {
        ThrowIfStruck(L"CoreApplication.Exit");
        CurrentHost().Exit();
    }
};

} // namespace

IInspectable MakeCoreApplicationFactory()
{
    return winrt::make<CoreApplicationFactory>();
}

} // namespace sim
