#include "simulator/runtime/background/BackgroundTaskBuilder.h"

#include "simulator/runtime/Answers.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"

namespace sim
{

void BackgroundTaskBuilder::Name(winrt::hstring const& value)
{
    ThrowIfStruck(L"BackgroundTaskBuilder.Name");
    m_name = value;
}

void BackgroundTaskBuilder::SetTrigger(Platform::Background::IBackgroundTrigger const& trigger)
{
    ThrowIfStruck(L"BackgroundTaskBuilder.SetTrigger");
    m_trigger = trigger;
}

Platform::Background::BackgroundTaskRegistration BackgroundTaskBuilder::Register() const
{
    if (StruckByNull(L"BackgroundTaskBuilder.Register"))
    {
        return nullptr;
    }
    Message request = {L"register-task", std::wstring(m_name), L"push", L"0", L"0"};
    if (auto const timer = m_trigger.try_as<Platform::Background::ITimeTrigger>())
    {
        request = {request[0], request[1], L"timer", std::to_wstring(timer.FreshnessTime()),
                   timer.OneShot() ? L"1" : L"0"};
    }
    else if (!m_trigger ||
             winrt::get_class_name(m_trigger) != winrt::name_of<Platform::Background::PushNotificationTrigger>())
    {
        throw winrt::hresult_invalid_argument();
    }
    auto const answer = AskForResult(request);
    return winrt::make<BackgroundTaskRegistration>(WordOf(answer, 2), m_name);
}

} // namespace sim
