#pragma once
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace test
{

// The desktop helper, in the test's own process.
class TestHelper
{
  public:
    using AppServiceClosedStatus = winrt::Windows::ApplicationModel::AppService::AppServiceClosedStatus;
    using AppServiceConnection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
    using AppServiceConnectionStatus = winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;
    using AppServiceResponse = winrt::Windows::ApplicationModel::AppService::AppServiceResponse;
    using ValueSet = winrt::Windows::Foundation::Collections::ValueSet;

  private:
    struct Inbox;

  public:
    // A request that has been sent.
    class Request
    {
      public:
        using Operation = winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse>;

        // sent: the message, as text. inbox: of the helper that has sent it.
        Request(Operation operation, std::wstring sent, std::shared_ptr<Inbox> inbox)
            : m_operation(std::move(operation)), m_sent(std::move(sent)), m_inbox(std::move(inbox))
        {
        }

        // Waits for the response. Throws std::runtime_error at the time limit.
        AppServiceResponse get() const;

        bool IsOpen() const { return m_operation.Status() == winrt::Windows::Foundation::AsyncStatus::Started; }

      private:
        Operation m_operation;
        std::wstring m_sent;
        std::shared_ptr<Inbox> m_inbox;
    };

    // Connects; the test fails when it cannot.
    TestHelper();
    TestHelper(TestHelper const&) = delete;
    TestHelper& operator=(TestHelper const&) = delete;
    ~TestHelper();

    // Sends {Command: command}.
    Request Ask(std::wstring_view command) const;
    Request Send(ValueSet const& request) const;

    // Closes its end.
    void Close() const;

    // Waits for that many messages; returns all so far, each as KEY=VALUE KEY=VALUE, in order. Throws
    // std::runtime_error at the time limit.
    std::vector<std::wstring> WaitForMessages(std::size_t count) const;

    // The messages so far.
    std::vector<std::wstring> Messages() const { return WaitForMessages(0); }

    AppServiceClosedStatus WaitForClosed() const;

    // A message as returned by WaitForMessages. A value that is no string is shown as its class name.
    static std::wstring Text(ValueSet const& message);

  private:
    // Shared with the handlers, which may run after the helper is destroyed.
    struct Inbox
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<std::wstring> messages;
        std::optional<AppServiceClosedStatus> closed;
    };

    static AppServiceConnection NewConnection();

    AppServiceConnection m_connection = NewConnection();
    std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();
};

} // namespace test
