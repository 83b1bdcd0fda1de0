#pragma once
#include <atomic>
#include <memory>
#include <utility>
#include <winrt/Windows.ApplicationModel.AppService.h>

namespace VelmoNotificationClient
{

// The deferral of a request, which several continuations complete. Copies share the deferral. Any thread.
class RequestDeferral
{
  public:
    using AppServiceDeferral = winrt::Windows::ApplicationModel::AppService::AppServiceDeferral;

    explicit RequestDeferral(AppServiceDeferral deferral) : m_state(std::make_shared<State>(std::move(deferral))) {}

    // Calls the platform each time. Throws hresult_error on failure, unless another completion has succeeded: the
    // platform may refuse to complete a request again. A completion that fails while another one is in progress leaves
    // the failure to that one; when all fail, the last one throws.
    void Complete() const
    {
        ++m_state->doneOrInProgress;
        try
        {
            m_state->deferral.Complete();
        }
        catch (...)
        {
            if (--m_state->doneOrInProgress == 0)
            {
                throw;
            }
        }
    }

  private:
    struct State
    {
        explicit State(AppServiceDeferral taken) : deferral(std::move(taken)) {}

        AppServiceDeferral deferral;
        std::atomic<unsigned> doneOrInProgress = 0; // completions that have not failed
    };

    std::shared_ptr<State> m_state;
};

} // namespace VelmoNotificationClient
