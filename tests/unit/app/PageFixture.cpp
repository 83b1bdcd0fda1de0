#include "tests/unit/app/PageFixture.h"

#include "tests/support/Files.h"

using winrt::Windows::UI::Xaml::Application;

namespace test
{

PageFixture::PageFixture()
{
    WriteBytes(package / L"MainPage.xaml", ReadBytes(MAIN_PAGE_MARKUP));
    host.SetPackageFolder(package.Path());
}

void PageFixture::OnView(std::function<void(VelmoNotificationClient::App& app)> const& body)
{
    host.End();
    Application::Start([&](auto&&) { body(*winrt::make_self<VelmoNotificationClient::App>()); });
}

std::vector<std::wstring> PageFixture::Reported(std::wstring_view kind)
{
    std::vector<std::wstring> texts;
    for (auto const& event : host.Reports())
    {
        if (event.kind == kind)
        {
            texts.push_back(event.Text());
        }
    }
    return texts;
}

} // namespace test
