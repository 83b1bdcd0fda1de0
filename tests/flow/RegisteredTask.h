#pragma once
#include <winrt/Windows.ApplicationModel.Background.h>

namespace test
{

// Registers a background task of the app with the platform.
inline void RegisterTask(winrt::param::hstring const& name,
                         winrt::Windows::ApplicationModel::Background::IBackgroundTrigger const& trigger)
{
    winrt::Windows::ApplicationModel::Background::BackgroundTaskBuilder const builder;
    builder.Name(name);
    builder.SetTrigger(trigger);
    builder.Register();
}

inline void RegisterPushTask(winrt::param::hstring const& name)
{
    RegisterTask(name, winrt::Windows::ApplicationModel::Background::PushNotificationTrigger());
}

// With a timer that fires once a day.
inline void RegisterDailyTask(winrt::param::hstring const& name)
{
    RegisterTask(name, winrt::Windows::ApplicationModel::Background::TimeTrigger(24 * 60, false));
}

} // namespace test
