#include "simulator/runtime/background/BackgroundTaskBuilder.h"

#include "simulator/runtime/CurrentHost.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"

namespace sim
{

void BackgroundTaskBuilder::Name(winrt::hstring const& value)
{
    ThrowIfStruck(L"BackgroundTaskBuilder.Name");
    m_name = value;
}

void BackgroundTaskBuilder::SetTrigger(Background::IBackgroundTrigger const& trigger)
{
    ThrowIfStruck(L"BackgroundTaskBuilder.SetTrigger");
    m_trigger = trigger;
}

Background::BackgroundTaskRegistration BackgroundTaskBuilder::Register() const
{
    if (StruckByNull(L"BackgroundTaskBuilder.Register"))
    {
        return nullptr;
    }
    RegisterTask request{.name = std::wstring(m_name)};
    if (auto const timer = m_trigger.try_as<Background::ITimeTrigger>())
    {
        request.trigger = Trigger::Timer;
        request.minutes = timer.FreshnessTime();
        request.once = timer.OneShot();
    }
    else if (!m_trigger || winrt::get_class_name(m_trigger) != winrt::name_of<Background::PushNotificationTrigger>())
    {
        throw winrt::hresult_invalid_argument();
    }
    auto const answer = CurrentHost().Ask(request);
    winrt::check_hresult(answer.result);
    return winrt::make<BackgroundTaskRegistration>(answer.id, m_name);
}

} // namespace sim
