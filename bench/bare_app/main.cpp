#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.UI.Xaml.h>

#include <string_view>
#include <windows.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::UI::Xaml;

namespace
{

// The least that a packaged app of this kind can be: it writes one line to a file in its temporary folder when it is
// constructed, and ends when it is activated.
struct BareApp : ApplicationT<BareApp>
{
    BareApp()
    {
        wchar_t path[MAX_PATH + 16] = {};
        GetTempPathW(MAX_PATH, path);
        wcscat(path, L"bare.log");
        auto const file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        constexpr std::wstring_view line = L"\xFEFFstarted\r\n";
        DWORD written = 0;
        WriteFile(file, line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written, nullptr);
        CloseHandle(file);
    }

    void OnActivated(Activation::IActivatedEventArgs const&) { Core::CoreApplication::Exit(); }
};

} // namespace

int main()
{
    Application::Start([](auto&&) { winrt::make<BareApp>(); });
    return 0;
}
