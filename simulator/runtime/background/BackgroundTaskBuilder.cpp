#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"

namespace sim
{

namespace
{

// A raw notification of the app's own channel.
using PushNotificationTrigger = Record<Background::PushNotificationTrigger, Interfaces<Background::IBackgroundTrigger>>;

// A time that has passed: once, or again and again. FreshnessTime: minutes. Too few are not refused before a task is
// registered.
using TimeTrigger =
    Record<Background::TimeTrigger, Interfaces<Background::ITimeTrigger, Background::IBackgroundTrigger>,
           Property<"FreshnessTime", std::uint32_t>, Property<"OneShot", bool>>;

struct TimeTriggerFactory : Implements<TimeTriggerFactory, IActivationFactory, Background::ITimeTriggerFactory>
{
    Background::TimeTrigger Create(std::uint32_t freshnessTime, bool oneShot) const
    {
        return StruckByNull(L"TimeTrigger.Create") ? Background::TimeTrigger(nullptr)
                                                   : winrt::make<TimeTrigger>(freshnessTime, oneShot);
    }
};

// Registers tasks that run in the app's own process.
struct BackgroundTaskBuilder : Implements<BackgroundTaskBuilder, Background::IBackgroundTaskBuilder,
                                          Background::IBackgroundTaskBuilder2, Background::IBackgroundTaskBuilder3>
{
    using class_type = Background::BackgroundTaskBuilder;

    winrt::hstring Name() const { return m_name; }

    void Name(winrt::hstring const& value)
    {
        ThrowIfStruck(L"BackgroundTaskBuilder.Name");
        m_name = value;
    }

    void SetTrigger(Background::IBackgroundTrigger const& trigger)
    {
        ThrowIfStruck(L"BackgroundTaskBuilder.SetTrigger");
        m_trigger = trigger;
    }

    // Fails without a trigger, and with a time trigger below 15 minutes.
    Background::BackgroundTaskRegistration Register() const
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
        else if (!m_trigger ||
                 winrt::get_class_name(m_trigger) != winrt::name_of<PushNotificationTrigger::class_type>())
        {
            throw winrt::hresult_invalid_argument();
        }
        auto const answer = CurrentHost().Ask(request);
        winrt::check_hresult(answer.result);
        return MakeRegistration(answer.id, m_name);
    }

  private:
    winrt::hstring m_name;
    Background::IBackgroundTrigger m_trigger;
};

} // namespace

IInspectable MakePushNotificationTriggerFactory()
{
    return DefaultFactory<PushNotificationTrigger>::Make();
}

IInspectable MakeTimeTriggerFactory()
{
    return winrt::make<TimeTriggerFactory>();
}

IInspectable MakeBackgroundTaskBuilderFactory()
{
    return DefaultFactory<BackgroundTaskBuilder>::Make();
}

} // namespace sim
