#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/Framework.h"

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

struct SuspendingOperation : winrt::implements<SuspendingOperation, AppModel::ISuspendingOperation>
{
    using class_type = AppModel::SuspendingOperation;

    AppModel::SuspendingDeferral GetDeferral() const { return winrt::make<SuspendingDeferral>(); }

    winrt::Windows::Foundation::DateTime Deadline() const noexcept
    {
        return winrt::clock::now() + std::chrono::seconds(5);
    }
};

struct SuspendingEventArgs : winrt::implements<SuspendingEventArgs, AppModel::ISuspendingEventArgs>
{
    using class_type = AppModel::SuspendingEventArgs;

    AppModel::SuspendingOperation SuspendingOperation() const { return winrt::make<sim::SuspendingOperation>(); }
};

} // namespace

ApplicationBase::~ApplicationBase()
{
    Framework::Instance().Forget(*this);
}

void ApplicationBase::RaiseSuspending(IInspectable const& sender)
{
    m_suspending(sender, winrt::make<SuspendingEventArgs>());
}

void ApplicationBase::RaiseUnhandledException(IInspectable const& sender)
{
    m_unhandledException(sender, Xaml::UnhandledExceptionEventArgs(nullptr));
}

} // namespace sim
