#include "app/App.h"

#include "app/SetUpLogging.h"
#include "service/LogSite.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.h>

#include <windows.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::UI::Xaml;

namespace VelmoNotificationClient
{

namespace
{

constexpr LogSite logSite(L"ZEBMain");

// Logs when the desktop component has been started. A launch that fails later is not observed: no line, no retry. It
// continues on the thread that completes the launch, since the launching thread may be blocked. The App stays alive
// until then.
winrt::fire_and_forget LogWhenLaunched(winrt::com_ptr<App> /*app*/, IAsyncAction launch)
{
    try
    {
        co_await winrt::resume_agile(launch);
    }
    catch (winrt::hresult_error const&)
    {
        co_return;
    }
    logSite.Info(L"Launch Done !! ");
}

// Throws hresult_error when the launch fails at once; an operation that is not there counts as that.
IAsyncAction LaunchDesktopComponent(wchar_t const* parameterGroup)
{
    auto launch = FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(parameterGroup);
    if (!launch)
    {
        throw winrt::hresult_invalid_argument();
    }
    return launch;
}

// No page is shown. The window's content is looked at as the framework's own start-up code does, and left as it is.
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

    logSite.Info(L"Inside OnLaunched");
    LookAtWindowContent();
    logSite.Info(L"Going to launch full trust app to launch HOV");
    LogWhenLaunched(get_strong(), LaunchDesktopComponent(L"LaunchHOV"));
    // In full, even when the launch is done earlier.
    Sleep(waitMilliseconds);
    logSite.Info(L"Going to exit");
    Core::CoreApplication::Exit();
}

void App::OnActivated(IActivatedEventArgs const& args)
{
    logSite.Info(L"Inside OnActivated App activated by URI protocol");
    if (args)
    {
        // Read for its failure alone: whatever the kind, the app ends.
        static_cast<void>(args.Kind());
    }
    Core::CoreApplication::Exit();
}

void App::OnSuspending(IInspectable const&, SuspendingEventArgs const&) {}

} // namespace VelmoNotificationClient
