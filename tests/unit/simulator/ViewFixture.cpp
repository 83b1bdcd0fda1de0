#include "tests/unit/simulator/ViewFixture.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.Foundation.h>

using winrt::Windows::UI::Xaml::Application;

namespace
{

struct PlainApp : winrt::Windows::UI::Xaml::ApplicationT<PlainApp>
{
};

} // namespace

void ViewFixture::OnView(std::function<void()> const& body)
{
    m_host.End();
    Application::Start([&](auto&&) {
        auto const app = winrt::make<PlainApp>();
        body();
    });
}

std::int32_t ViewFixture::ResultOnView(std::function<void()> const& body)
{
    std::int32_t result = 0;
    OnView([&] {
        try
        {
            body();
        }
        catch (winrt::hresult_error const& error)
        {
            result = error.code();
        }
    });
    return result;
}

std::vector<std::wstring> ViewFixture::Reports()
{
    std::vector<std::wstring> texts;
    for (auto const& event : m_host.Reports())
    {
        texts.push_back(event.Text());
    }
    return texts;
}
