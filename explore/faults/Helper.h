#pragma once
#include "explore/faults/model/Outcome.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace explore::faults
{

// A desktop helper in this process that waits for nothing. It answers a message when it is told to.
class Helper
{
  public:
    Helper();
    Helper(Helper const&) = delete;
    Helper& operator=(Helper const&) = delete;
    ~Helper() { Close(); } // NOLINT(bugprone-exception-escape): a failure in it ends the process, which is reported

    void Open();
    void Prepare(std::wstring_view command); // a request, for Ask
    void Ask();                              // sends the next one; one that has closed cannot
    void Close();

    // False when there is none to answer.
    bool AnswerMessage() const;

    // From now on each message is answered at once.
    void AnswerAtOnce() const;

    // As "KEY=VALUE KEY=VALUE".
    std::vector<std::wstring> Messages() const;

    // To what it has asked, in that order.
    std::vector<Answer> Answers() const;

  private:
    using AppServiceConnection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
    using AppServiceResponse = winrt::Windows::ApplicationModel::AppService::AppServiceResponse;
    using AppServiceDeferral = winrt::Windows::ApplicationModel::AppService::AppServiceDeferral;
    using ValueSet = winrt::Windows::Foundation::Collections::ValueSet;

    // Shared with the handler, which may run when the helper is gone.
    struct Inbox
    {
        std::mutex mutex;
        std::vector<std::wstring> messages;
        std::deque<AppServiceDeferral> unanswered;
        bool answersAtOnce = false;
    };

    AppServiceConnection m_connection{nullptr};
    std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();
    std::atomic<bool> m_isClosed = false;
    std::vector<ValueSet> m_prepared;
    std::vector<winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse>> m_requests;
    winrt::Windows::Foundation::IAsyncOperation<
        winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus>
        m_opening{nullptr};
};

} // namespace explore::faults
