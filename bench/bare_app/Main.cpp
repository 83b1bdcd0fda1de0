#include <string_view>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

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

// Launched it waits to be ended, activated by its protocol it ends, and to its service a desktop program may connect.
struct BareApp : winrt::Windows::UI::Xaml::ApplicationT<BareApp>
{
    BareApp() { WriteOneLine(); }

    void OnActivated(winrt::Windows::ApplicationModel::Activation::IActivatedEventArgs const&)
    {
        winrt::Windows::ApplicationModel::Core::CoreApplication::Exit();
    }

    void OnBackgroundActivated(winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args)
    {
        auto const task = args.TaskInstance();
        auto const details =
            task.TriggerDetails().as<winrt::Windows::ApplicationModel::AppService::AppServiceTriggerDetails>();
        // The handler keeps the task running, and its connection open, until the connection is closed.
        details.AppServiceConnection().RequestReceived(
            [deferral = task.GetDeferral(), connection = details.AppServiceConnection()](auto&&...) {});
    }
};

} // namespace

int main()
{
    winrt::Windows::UI::Xaml::Application::Start([](auto&&) { winrt::make<BareApp>(); });
    return 0;
}
