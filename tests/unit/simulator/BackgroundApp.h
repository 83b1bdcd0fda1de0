#pragma once
#include "simulator/base/Handle.h"
#include "simulator/testing/LocalDevice.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <mutex>
#include <thread>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace test
{

using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::ApplicationModel::Background;
using winrt::Windows::Foundation::IInspectable;
using winrt::Windows::Foundation::Collections::ValueSet;

// Something that happens on another thread.
class Signal
{
  public:
    void Set() const { SetEvent(m_event.Get()); }

    void Wait() const { WaitForSingleObject(m_event.Get(), INFINITE); }

    bool IsSet() const { return WaitForSingleObject(m_event.Get(), 0) == WAIT_OBJECT_0; }

  private:
    sim::Handle m_event{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

// What comes from other threads, in its order.
template <typename T>
class Arrivals
{
  public:
    void Add(T value)
    {
        std::lock_guard const lock(m_mutex);
        m_values.push_back(std::move(value));
        m_came.notify_all();
    }

    // The next one; waits for it.
    T Next()
    {
        std::unique_lock lock(m_mutex);
        m_came.wait(lock, [&] { return !m_values.empty(); });
        auto value = std::move(m_values.front());
        m_values.pop_front();
        return value;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::deque<T> m_values;
};

// An app that runs in the background as long as the test does. What it does the test sets before it activates it.
class BackgroundApp : public testing::Test
{
  protected:
    BackgroundApp();
    ~BackgroundApp() override;

    // Ends the app.
    void EndApp();

    // How often the device reported that.
    std::size_t CountReports(std::wstring_view kind);

    // Called on the UI thread.
    std::function<void(IBackgroundTaskInstance const&)> onActivated;

    sim::LocalDevice host;

  private:
    struct App;

    std::thread m_main;
};

// The same with an app service: the app keeps a deferral of each connection.
class ServiceApp : public BackgroundApp
{
  protected:
    using Args = AppServiceRequestReceivedEventArgs;

    ServiceApp();
    ~ServiceApp() override;

    // The caller's end of a connection to the app.
    static AppServiceConnection NewConnection();

    // Open.
    static AppServiceConnection Open();

    // Called on threads of the multi-threaded apartment.
    std::function<void(AppServiceConnection const&, Args const&)> onRequest;

    // What the app heard of its connections and their tasks.
    Arrivals<AppServiceClosedStatus> closings;
    Arrivals<BackgroundTaskCancellationReason> cancellations;

    // The app's ends, and the deferrals of their tasks, in order.
    std::vector<AppServiceConnection> served;
    std::vector<BackgroundTaskDeferral> deferrals;
};

ValueSet SetOf(std::initializer_list<std::pair<wchar_t const*, IInspectable>> values);

ValueSet SetOf(wchar_t const* name, wchar_t const* text);

// The text under a name.
std::wstring TextIn(ValueSet const& set, wchar_t const* name);

// The code of the hresult_error that a call throws, or 0.
template <typename Call>
std::int32_t FailureOf(Call const& call)
{
    try
    {
        call();
        return 0;
    }
    catch (winrt::hresult_error const& error)
    {
        return error.code();
    }
}

} // namespace test
