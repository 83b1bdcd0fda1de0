#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Framework.h"

#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Navigation.h>

namespace sim
{

namespace
{

// The platform's half of a page: the inner object that the app's own class is composed over. It is shown nowhere.
struct PageBase : Implements<PageBase, Xaml::Controls::IPage, Xaml::Controls::IPageOverrides,
                             Xaml::Controls::IUserControl, winrt::composable>
{
    using class_type = Xaml::Controls::Page;

    Xaml::UIElement Content() const { return m_content; }

    void Content(Xaml::UIElement const& value) { m_content = value; }

    void OnNavigatedFrom(auto const&...) const noexcept {}
    void OnNavigatedTo(auto const&...) const noexcept {}
    void OnNavigatingFrom(auto const&...) const noexcept {}

  private:
    Xaml::UIElement m_content{nullptr};
};

struct PageFactory : Implements<PageFactory, IActivationFactory, Xaml::Controls::IPageFactory>
{
    // On the UI thread alone: RPC_E_WRONG_THREAD elsewhere.
    Xaml::Controls::Page CreateInstance(IInspectable const& outer, IInspectable& inner) const
    {
        ThrowIfStruck(L"Page.CreateInstance");
        Framework::Instance().NeedUiThread();
        return winrt::impl::composable_factory<PageBase>::CreateInstance<Xaml::Controls::Page>(outer, inner);
    }
};

} // namespace

IInspectable MakePageFactory()
{
    return winrt::make<PageFactory>();
}

} // namespace sim
