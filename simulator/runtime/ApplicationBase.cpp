#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/CurrentHost.h"
#include "simulator/runtime/Deferral.h"
#include "simulator/runtime/Framework.h"
#include "simulator/runtime/Record.h"

#include <chrono>

namespace sim
{

namespace
{

// What a handler of Suspending gets. The platform goes by the deadline that it is told.
struct SuspendingOperation
    : RecordOf<SuspendingOperation, AppModel::SuspendingOperation, Interfaces<AppModel::ISuspendingOperation>,
               Property<"Deadline", Foundation::DateTime>>
{
    explicit SuspendingOperation(std::shared_ptr<DeferralCounter> counter)
        : RecordOf(winrt::clock::now() + std::chrono::seconds(5)), m_counter(std::move(counter))
    {
    }

    AppModel::SuspendingDeferral GetDeferral() const { return TakeDeferral<AppModel::SuspendingDeferral>(m_counter); }

  private:
    std::shared_ptr<DeferralCounter> const m_counter;
};

using SuspendingEventArgs = Record<AppModel::SuspendingEventArgs, Interfaces<AppModel::ISuspendingEventArgs>,
                                   Property<"SuspendingOperation", AppModel::SuspendingOperation>>;

} // namespace

ApplicationBase::~ApplicationBase()
{
    Framework::Instance().Forget(*this);
}

void ApplicationBase::RaiseSuspending(IInspectable const& sender)
{
    auto const counter =
        std::make_shared<DeferralCounter>([host = HostReference()] { host.Tell(SuspendingCompleted{}); });
    m_suspending(sender, winrt::make<SuspendingEventArgs>(winrt::make<SuspendingOperation>(counter)));
    counter->Finish();
}

void ApplicationBase::RaiseUnhandledException(IInspectable const& sender)
{
    m_unhandledException(sender, Xaml::UnhandledExceptionEventArgs(nullptr));
}

} // namespace sim
