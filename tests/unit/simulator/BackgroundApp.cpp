#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>

namespace test
{

struct BackgroundApp::App : winrt::Windows::UI::Xaml::ApplicationT<App>
{
    explicit App(BackgroundApp& test) : m_test(test) {}

    void OnBackgroundActivated(BackgroundActivatedEventArgs const& args) { m_test.onActivated(args.TaskInstance()); }

  private:
    BackgroundApp& m_test;
};

BackgroundApp::BackgroundApp()
    : m_main([this] {
          auto const result = FailureOf(
              [this] { winrt::Windows::UI::Xaml::Application::Start([this](auto&&) { winrt::make<App>(*this); }); });
          EXPECT_EQ(result, 0) << "the app did not start";
      })
{
}

BackgroundApp::~BackgroundApp()
{
    EndApp();
}

void BackgroundApp::EndApp()
{
    host.End();
    if (m_main.joinable())
    {
        m_main.join();
    }
}

std::size_t BackgroundApp::CountReports(std::wstring_view kind)
{
    return static_cast<std::size_t>(std::ranges::count(host.Reports(), kind, &sim::Event::kind));
}

ServiceApp::ServiceApp() : onRequest([](auto&&...) {})
{
    onActivated = [this](IBackgroundTaskInstance const& instance) {
        auto const connection = instance.TriggerDetails().as<AppServiceTriggerDetails>().AppServiceConnection();
        deferrals.push_back(instance.GetDeferral());
        served.push_back(connection);
        instance.Canceled([this](auto&&, BackgroundTaskCancellationReason reason) { cancellations.Add(reason); });
        connection.ServiceClosed([this](auto&&, auto const& args) { closings.Add(args.Status()); });
        connection.RequestReceived([this](auto const& sender, auto const& args) { onRequest(sender, args); });
    };
}

ServiceApp::~ServiceApp()
{
    EndApp();
    host.WaitUntilQuiet();
}

AppServiceConnection ServiceApp::NewConnection()
{
    sim::CallerScope const caller;
    AppServiceConnection connection;
    connection.AppServiceName(sim::LocalDevice::appServiceName);
    connection.PackageFamilyName(sim::LocalDevice::familyName);
    return connection;
}

AppServiceConnection ServiceApp::Open()
{
    auto connection = NewConnection();
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Success);
    return connection;
}

ValueSet SetOf(std::initializer_list<std::pair<wchar_t const*, IInspectable>> values)
{
    ValueSet set;
    for (auto const& [name, value] : values)
    {
        set.Insert(name, value);
    }
    return set;
}

ValueSet SetOf(wchar_t const* name, wchar_t const* text)
{
    return SetOf({{name, winrt::box_value(text)}});
}

std::wstring TextIn(ValueSet const& set, wchar_t const* name)
{
    return std::wstring(winrt::unbox_value<winrt::hstring>(set.Lookup(name)));
}

} // namespace test
