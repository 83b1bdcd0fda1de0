#include <string_view>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>
#include <winrt/Windows.UI.Xaml.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Networking::PushNotifications;

namespace
{

// The least that a packaged app of the product's kind does before a line is on disk: the cost of starting any.
void WriteOneLine()
{
    constexpr std::wstring_view line =
        L"******************************************** started ***************************\r\n";
    wchar_t path[MAX_PATH + 16];
    auto const length = GetTempPathW(MAX_PATH, path);
    lstrcpyW(path + length, L"bare.log");
    auto* const file = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written, nullptr);
    CloseHandle(file);
}

void RegisterPushTask()
{
    BackgroundTaskBuilder const task;
    task.Name(L"push");
    task.SetTrigger(PushNotificationTrigger());
    task.Register();
}

// The handler keeps the task running, and its connection open, until the connection is closed.
void Serve(AppServiceConnection const& connection, BackgroundTaskDeferral const& deferral)
{
    connection.RequestReceived([connection, deferral](auto&&...) {});
}

void LaunchDesktopComponent(BackgroundTaskDeferral const& deferral)
{
    FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(L"NotificationReceived")
        .Completed([deferral](auto&&...) { deferral.Complete(); });
}

// Launched it has pushes sent to it and stays, activated by its protocol it ends; a push makes it start the desktop
// component, and to its service a desktop program may connect.
struct BareApp : winrt::Windows::UI::Xaml::ApplicationT<BareApp>
{
    BareApp() { WriteOneLine(); }

    static void OnLaunched(LaunchActivatedEventArgs const&)
    {
        PushNotificationChannelManager::CreatePushNotificationChannelForApplicationAsync().Completed(
            [](auto&&...) { RegisterPushTask(); });
    }

    static void OnActivated(IActivatedEventArgs const&) { Core::CoreApplication::Exit(); }

    static void OnBackgroundActivated(BackgroundActivatedEventArgs const& args)
    {
        auto const task = args.TaskInstance();
        if (auto const details = task.TriggerDetails().try_as<AppServiceTriggerDetails>())
        {
            Serve(details.AppServiceConnection(), task.GetDeferral());
            return;
        }
        LaunchDesktopComponent(task.GetDeferral());
    }
};

} // namespace

int main()
{
    winrt::Windows::UI::Xaml::Application::Start([](auto&&) { winrt::make<BareApp>(); });
    return 0;
}
