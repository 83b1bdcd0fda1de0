#include "explore/faults/Helper.h"

#include "simulator/testing/LocalDevice.h"

#include <utility>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation;

namespace explore::faults
{

namespace
{

std::wstring ValueText(IInspectable const& value)
{
    auto const text = value.try_as<IReference<winrt::hstring>>();
    return text ? std::wstring(text.Value()) : L"(null)";
}

std::wstring Text(Collections::ValueSet const& message)
{
    std::wstring text;
    for (auto const& entry : message)
    {
        text += (text.empty() ? L"" : L" ") + std::wstring(entry.Key()) + L"=" + ValueText(entry.Value());
    }
    return text;
}

} // namespace

Helper::Helper()
{
    sim::CallerScope const caller;
    m_connection = AppServiceConnection();
    m_connection.AppServiceName(sim::LocalDevice::appServiceName);
    m_connection.PackageFamilyName(sim::LocalDevice::familyName);
    m_connection.RequestReceived([inbox = m_inbox](auto&&, AppServiceRequestReceivedEventArgs const& args) {
        auto text = Text(args.Request().Message());
        std::lock_guard const lock(inbox->mutex);
        inbox->messages.push_back(std::move(text));
        if (!inbox->answersAtOnce)
        {
            inbox->unanswered.push_back(args.GetDeferral());
        }
    });
}

void Helper::Open()
{
    m_opening = m_connection.OpenAsync();
}

void Helper::Prepare(std::wstring_view command)
{
    m_prepared.emplace_back().Insert(L"Command", winrt::box_value(winrt::hstring(command)));
}

void Helper::Ask()
{
    auto& request = m_requests.emplace_back(nullptr);
    if (!m_isClosed)
    {
        request = m_connection.SendMessageAsync(m_prepared.at(m_requests.size() - 1));
    }
}

void Helper::Close()
{
    sim::CallerScope const caller; // also on a thread of the app
    m_isClosed = true;
    m_connection.Close();
}

bool Helper::AnswerMessage() const
{
    std::unique_lock lock(m_inbox->mutex);
    if (m_inbox->unanswered.empty())
    {
        return false;
    }
    auto const deferral = std::move(m_inbox->unanswered.front());
    m_inbox->unanswered.pop_front();
    lock.unlock();
    deferral.Complete();
    return true;
}

void Helper::AnswerAtOnce() const
{
    std::lock_guard const lock(m_inbox->mutex);
    m_inbox->answersAtOnce = true;
}

std::vector<std::wstring> Helper::Messages() const
{
    std::lock_guard const lock(m_inbox->mutex);
    return m_inbox->messages;
}

std::vector<Answer> Helper::Answers() const
{
    std::vector<Answer> answers;
    for (auto const& request : m_requests)
    {
        auto const status = request ? request.Status() : AsyncStatus::Error;
        auto const message = status == AsyncStatus::Completed ? request.GetResults().Message() : nullptr;
        answers.push_back({status != AsyncStatus::Started, message ? Text(message) : std::wstring()});
    }
    return answers;
}

} // namespace explore::faults
