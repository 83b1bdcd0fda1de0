#include "simulator/runtime/ApplicationBase.h"

#include "simulator/runtime/DeferralCounter.h"
#include "simulator/runtime/Framework.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/Record.h"

#include <atomic>
#include <chrono>

namespace sim
{

namespace
{

// What a handler of Suspending gets. The platform goes by the deadline that it is told.

struct SuspendingDeferral : winrt::implements<SuspendingDeferral, AppModel::ISuspendingDeferral>
{
    using class_type = AppModel::SuspendingDeferral;

    explicit SuspendingDeferral(std::shared_ptr<DeferralCounter> counter) : m_counter(std::move(counter)) {}

    void Complete()
    {
        if (!m_isCompleted.exchange(true))
        {
            m_counter->Finish();
        }
    }

  private:
    std::shared_ptr<DeferralCounter> const m_counter;
    std::atomic<bool> m_isCompleted = false;
};

struct SuspendingOperation : winrt::implements<SuspendingOperation, AppModel::ISuspendingOperation>
{
    using class_type = AppModel::SuspendingOperation;

    explicit SuspendingOperation(std::shared_ptr<DeferralCounter> counter) : m_counter(std::move(counter)) {}

    AppModel::SuspendingDeferral GetDeferral() const
    {
        m_counter->Take();
        return winrt::make<SuspendingDeferral>(m_counter);
    }

    Foundation::DateTime Deadline() const noexcept { return m_deadline; }

  private:
    std::shared_ptr<DeferralCounter> const m_counter;
    Foundation::DateTime const m_deadline = winrt::clock::now() + std::chrono::seconds(5);
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
