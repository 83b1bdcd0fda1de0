#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/Deferral.h"
#include "simulator/runtime/Framework.h"
#include "simulator/runtime/Record.h"

#include <chrono>

namespace sim
{

namespace
{

// The deadline is not enforced: nothing is suspended here.
using SuspendingOperation =
    Record<AppModel::SuspendingOperation, Interfaces<AppModel::ISuspendingOperation>,
           Property<"GetDeferral", AppModel::SuspendingDeferral>, Property<"Deadline", Foundation::DateTime>>;

using SuspendingEventArgs = Record<AppModel::SuspendingEventArgs, Interfaces<AppModel::ISuspendingEventArgs>,
                                   Property<"SuspendingOperation", AppModel::SuspendingOperation>>;

} // namespace

ApplicationBase::~ApplicationBase()
{
    Framework::Instance().Forget(*this);
}

void ApplicationBase::RaiseSuspending(IInspectable const& sender)
{
    auto const deferral = winrt::make<Deferral<AppModel::SuspendingDeferral>>([](bool) {});
    auto const operation = winrt::make<SuspendingOperation>(deferral, winrt::clock::now() + std::chrono::seconds(5));
    m_suspending(sender, winrt::make<SuspendingEventArgs>(operation));
}

void ApplicationBase::RaiseUnhandledException(IInspectable const& sender)
{
    m_unhandledException(sender, Xaml::UnhandledExceptionEventArgs(nullptr));
}

} // namespace sim
