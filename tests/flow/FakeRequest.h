#pragma once
#include "service/NotificationAppService.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <thread>
#include <utility>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace test
{

// A request without a connection, for tests that run its handler on a thread of their own.

// Fails to complete after a number of completions, and counts the calls.
struct FakeDeferral : winrt::implements<FakeDeferral, winrt::Windows::ApplicationModel::AppService::IAppServiceDeferral>
{
    using class_type = winrt::Windows::ApplicationModel::AppService::AppServiceDeferral;

    void Complete()
    {
        if (++calls > refusedAfter)
        {
            throw winrt::hresult_illegal_method_call();
        }
    }

    std::atomic<int> calls = 0;
    std::atomic<int> refusedAfter = 1000;
};

// Its response has been sent when SendResponseAsync returns.
struct FakeRequest : winrt::implements<FakeRequest, winrt::Windows::ApplicationModel::AppService::IAppServiceRequest>
{
    using class_type = winrt::Windows::ApplicationModel::AppService::AppServiceRequest;
    using Status = winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;
    using ValueSet = winrt::Windows::Foundation::Collections::ValueSet;

    explicit FakeRequest(ValueSet message) : m_message(std::move(message)) {}

    ValueSet Message() const { return m_message; }

    winrt::Windows::Foundation::IAsyncOperation<Status> SendResponseAsync(ValueSet const&) const
    {
        co_return Status::Success;
    }

  private:
    ValueSet m_message;
};

struct FakeRequestArgs
    : winrt::implements<FakeRequestArgs,
                        winrt::Windows::ApplicationModel::AppService::IAppServiceRequestReceivedEventArgs>
{
    using class_type = winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs;

    // command: the value under "Command".
    explicit FakeRequestArgs(winrt::Windows::Foundation::IInspectable const& command)
    {
        winrt::Windows::Foundation::Collections::ValueSet const message;
        message.Insert(L"Command", command);
        m_request = winrt::make<FakeRequest>(message);
    }

    winrt::Windows::ApplicationModel::AppService::AppServiceRequest Request() const { return m_request; }

    winrt::Windows::ApplicationModel::AppService::AppServiceDeferral GetDeferral() const
    {
        return deferral.as<winrt::Windows::ApplicationModel::AppService::AppServiceDeferral>();
    }

    winrt::com_ptr<FakeDeferral> deferral = winrt::make_self<FakeDeferral>();

  private:
    winrt::Windows::ApplicationModel::AppService::AppServiceRequest m_request = nullptr;
};

// Runs the handler on a thread of its own, to which faults apply. Returns the HRESULT that it failed with.
inline std::optional<std::int32_t> FailureOf(winrt::com_ptr<FakeRequestArgs> const& args)
{
    std::optional<std::int32_t> failure;
    std::thread([&] {
        try
        {
            VelmoNotificationClient::NotificationAppService::OnRequestReceived(
                nullptr, args.as<winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs>());
        }
        catch (winrt::hresult_error const& error)
        {
            failure = error.code();
        }
    }).join();
    return failure;
}

} // namespace test
