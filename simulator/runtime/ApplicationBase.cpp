#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/Framework.h"
#include "simulator/runtime/Suspending.h"

namespace sim
{

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
