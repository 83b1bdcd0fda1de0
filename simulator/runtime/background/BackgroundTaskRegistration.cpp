#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/values/MapView.h"

namespace sim
{

namespace
{

using Background::IBackgroundTaskRegistration;

winrt::guid GuidOf(std::wstring_view id)
{
    return id.empty() ? winrt::guid{} : winrt::guid(id);
}

struct BackgroundTaskRegistration
    : RecordOf<BackgroundTaskRegistration, Background::BackgroundTaskRegistration,
               Interfaces<IBackgroundTaskRegistration, Background::IBackgroundTaskRegistration2,
                          Background::IBackgroundTaskRegistration3>,
               Property<"TaskId", winrt::guid>, Property<"Name", winrt::hstring>>
{
    BackgroundTaskRegistration(std::wstring const& id, std::wstring_view name)
        : RecordOf(GuidOf(id), winrt::hstring(name)), m_id(id)
    {
    }

    // cancelTask: cancels its running instances, too. Does nothing for a task that is not registered.
    void Unregister(bool cancelTask) const
    {
        InjectFault(L"BackgroundTaskRegistration.Unregister");
        winrt::check_hresult(CurrentHost().Ask(UnregisterTask{m_id, cancelTask}).result);
    }

  private:
    std::wstring const m_id;
};

struct BackgroundTaskRegistrationFactory
    : Implements<BackgroundTaskRegistrationFactory, IActivationFactory, Background::IBackgroundTaskRegistrationStatics>
{
    // A snapshot, in the order of registration.
    Collections::IMapView<winrt::guid, IBackgroundTaskRegistration> AllTasks() const
    {
        constexpr wchar_t call[] = L"BackgroundTaskRegistration.AllTasks";
        if (InjectFault(call))
        {
            return nullptr;
        }
        auto tasks = std::make_shared<std::vector<std::pair<winrt::guid, IBackgroundTaskRegistration>>>();
        for (auto const& task : CurrentHost().Ask(ListTasks{}).tasks)
        {
            tasks->emplace_back(GuidOf(task.id), MakeRegistration(task.id, task.name));
        }
        return winrt::make<MapView<winrt::guid, IBackgroundTaskRegistration>>(std::move(tasks), call);
    }
};

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
        return InjectFault(L"TimeTrigger.Create") ? Background::TimeTrigger(nullptr)
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
        InjectFault(L"BackgroundTaskBuilder.Name");
        m_name = value;
    }

    void SetTrigger(Background::IBackgroundTrigger const& trigger)
    {
        InjectFault(L"BackgroundTaskBuilder.SetTrigger");
        m_trigger = trigger;
    }

    // Fails without a trigger, and with a time trigger below 15 minutes.
    Background::BackgroundTaskRegistration Register() const
    {
        if (InjectFault(L"BackgroundTaskBuilder.Register"))
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

Background::BackgroundTaskRegistration MakeRegistration(std::wstring const& id, std::wstring_view name)
{
    return winrt::make<BackgroundTaskRegistration>(id, name);
}

IInspectable MakeBackgroundTaskRegistrationFactory()
{
    return winrt::make<BackgroundTaskRegistrationFactory>();
}

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
