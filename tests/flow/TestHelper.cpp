#include "tests/flow/TestHelper.h"

#include "simulator/testing/LimitedWait.h"
#include "simulator/testing/LocalDevice.h"
#include "tests/flow/Lines.h"

#include <gtest/gtest.h>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace test
{

namespace
{

std::wstring ValueText(IInspectable const& value)
{
    if (!value)
    {
        return L"(null)";
    }
    auto const text = value.try_as<IReference<winrt::hstring>>();
    return std::wstring(text ? text.Value() : winrt::get_class_name(value));
}

} // namespace

AppServiceResponse TestHelper::Request::get() const
{
    m_operation.wait_for(sim::waitLimit);
    if (IsOpen())
    {
        std::lock_guard const lock(m_inbox->mutex);
        throw sim::Missing(L"the response to the helper's request " + m_sent + L", after the messages" +
                           Shown(m_inbox->messages));
    }
    return m_operation.GetResults();
}

TestHelper::TestHelper()
{
    m_connection.RequestReceived([inbox = m_inbox](auto&&, AppServiceRequestReceivedEventArgs const& args) {
        auto text = Text(args.Request().Message());
        std::lock_guard const lock(inbox->mutex);
        inbox->messages.push_back(std::move(text));
        inbox->changed.notify_all();
    });
    m_connection.ServiceClosed([inbox = m_inbox](auto&&, AppServiceClosedEventArgs const& args) {
        std::lock_guard const lock(inbox->mutex);
        inbox->closed = args.Status();
        inbox->changed.notify_all();
    });
    auto const opening = m_connection.OpenAsync();
    opening.wait_for(sim::waitLimit);
    EXPECT_EQ(opening.Status(), AsyncStatus::Completed) << sim::Missing(L"the helper's connection").what();
    EXPECT_EQ(opening.GetResults(), AppServiceConnectionStatus::Success);
}

TestHelper::~TestHelper()
{
    Close();
}

// Of another process than the app's.
TestHelper::AppServiceConnection TestHelper::NewConnection()
{
    sim::CallerScope const caller;
    AppServiceConnection connection;
    connection.AppServiceName(sim::LocalDevice::appServiceName);
    connection.PackageFamilyName(sim::LocalDevice::familyName);
    return connection;
}

TestHelper::Request TestHelper::Ask(std::wstring_view command) const
{
    ValueSet const request;
    request.Insert(L"Command", winrt::box_value(winrt::hstring(command)));
    return Send(request);
}

TestHelper::Request TestHelper::Send(ValueSet const& request) const
{
    return Request(m_connection.SendMessageAsync(request), Text(request), m_inbox);
}

void TestHelper::Close() const
{
    m_connection.Close();
}

std::vector<std::wstring> TestHelper::WaitForMessages(std::size_t count) const
{
    std::unique_lock lock(m_inbox->mutex);
    sim::WaitLimited(
        lock, m_inbox->changed, [&] { return m_inbox->messages.size() >= count; },
        [&] { return L"message " + std::to_wstring(count) + L" to the helper, among" + Shown(m_inbox->messages); });
    return m_inbox->messages;
}

AppServiceClosedStatus TestHelper::WaitForClosed() const
{
    std::unique_lock lock(m_inbox->mutex);
    sim::WaitLimited(
        lock, m_inbox->changed, [&] { return m_inbox->closed.has_value(); },
        [&] { return L"the end of the helper's connection, after the messages" + Shown(m_inbox->messages); });
    return *m_inbox->closed;
}

std::wstring TestHelper::Text(ValueSet const& message)
{
    std::wstring text;
    for (auto const& entry : message)
    {
        text += (text.empty() ? L"" : L" ") + std::wstring(entry.Key()) + L"=" + ValueText(entry.Value());
    }
    return text;
}

} // namespace test
