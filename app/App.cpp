#include "app/App.h"

#include "app/DesktopComponent.h"
#include "app/SetUpLogging.h"
#include "app/ShellLog.h"
#include "service/BackgroundTasks.h"
#include "service/NotNull.h"
#include "service/NotificationAppService.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.h>

#include <windows.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::UI::Xaml;

namespace VelmoNotificationClient
{

namespace
{

// No page is shown. The window's content is read as by the framework's own start-up code, and not changed.
void LookAtWindowContent()
{
    if (auto const window = Window::Current())
    {
        if (auto const content = window.Content())
        {
            content.try_as<Controls::Page>();
        }
    }
}

} // namespace

App::App()
{
    SetUpLogging();
    Suspending({get_weak(), &App::OnSuspending});
}

void App::OnLaunched(LaunchActivatedEventArgs const&)
{
    constexpr DWORD waitMilliseconds = 3000;

    shellLog.Info(L"Inside OnLaunched");
    LookAtWindowContent();
    shellLog.Info(L"Going to launch full trust app to launch HOV");
    LaunchDesktopComponent(get_strong(), L"LaunchHOV");
    // The whole time, even if the launch completes earlier.
    Sleep(waitMilliseconds);
    shellLog.Info(L"Going to exit");
    Core::CoreApplication::Exit();
}

void App::OnActivated(IActivatedEventArgs const& args)
{
    shellLog.Info(L"Inside OnActivated App activated by URI protocol");
    if (args)
    {
        // Called for its failure only: the app ends whatever the kind.
        static_cast<void>(args.Kind());
    }
    Core::CoreApplication::Exit();
}

void App::OnBackgroundActivated(BackgroundActivatedEventArgs const& args)
{
    shellLog.Info(L"Inside OnBackgroundActivated");
    auto const task = NotNull(NotNull(args).TaskInstance());
    if (task.TriggerDetails().try_as<AppServiceTriggerDetails>())
    {
        shellLog.Info(L"App service connection request received");
        winrt::make_self<NotificationAppService>()->ServiceNewConnection(args);
        return;
    }
    RunTriggerTask(task);
}

void App::RunTriggerTask(IBackgroundTaskInstance const& task)
{
    auto const deferral = task.GetDeferral();
    shellLog.Info(L"Deferal to complete background task");
    if (NotNull(task.Task()).Name() == timerTaskName)
    {
        shellLog.Info(L"Timer task bkg thread invocation");
        shellLog.Info(L"Going to launch full trust app for timer background task invocation");
        LaunchDesktopComponent(get_strong(), L"CURIUpdated", deferral);
    }
    else if (NotNull(task.Task()).Name() == pushTaskName)
    {
        shellLog.Info(L"Notification bkg thread invocation");
        shellLog.Info(L"Going to launch full trust app for new notification invocation ");
        LaunchDesktopComponent(get_strong(), L"NotificationReceived", deferral);
    }
    // Any other task: its deferral is never completed, and the platform ends it at its time limit.
}

void App::OnSuspending(IInspectable const&, SuspendingEventArgs const&) {}

} // namespace VelmoNotificationClient
