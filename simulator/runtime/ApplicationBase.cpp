#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/Framework.h"
#include "simulator/runtime/Record.h"

#include <chrono>

namespace sim
{

namespace
{

// What a handler of Suspending gets. The deadline is told and not enforced: nothing is suspended here.

struct SuspendingDeferral : winrt::implements<SuspendingDeferral, AppModel::ISuspendingDeferral>
{
    using class_type = AppModel::SuspendingDeferral;

    void Complete() const noexcept {}
};

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
    auto const operation = winrt::make<SuspendingOperation>(winrt::make<SuspendingDeferral>(),
                                                            winrt::clock::now() + std::chrono::seconds(5));
    m_suspending(sender, winrt::make<SuspendingEventArgs>(operation));
}

void ApplicationBase::RaiseUnhandledException(IInspectable const& sender)
{
    m_unhandledException(sender, Xaml::UnhandledExceptionEventArgs(nullptr));
}

} // namespace sim
