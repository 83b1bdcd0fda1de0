#include "doctor/live/AppService.h"

#include "helper/PackageFacts.h"
#include "service/Messages.h"

#include <algorithm>

namespace doctor
{

namespace
{

namespace Messages = VelmoNotificationClient::Messages;
using std::chrono::milliseconds;

// The message is sent before the request is completed; it may arrive a little later.
constexpr milliseconds afterCompletion = std::chrono::seconds(5);

class SessionService : public AppService
{
  public:
    std::optional<ConnectionStatus> Open(milliseconds limit) override
    {
        winrt::init_apartment();
        m_session = std::make_unique<helper::Session>();
        return m_session->TryOpen(packageFamilyName, appServiceName, limit);
    }

    ChannelAnswer AskForChannel(milliseconds limit) override
    {
        auto const begin = std::chrono::steady_clock::now();
        helper::Session::ValueSet const request;
        request.Insert(Messages::commandKey, winrt::box_value(Messages::getChannelUri));
        ChannelAnswer answer;
        if (auto const response = m_session->Send(request, limit))
        {
            answer.response = response.Status();
        }
        answer.message = m_session->Wait(answer.response ? afterCompletion : milliseconds(0));
        answer.took = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
        return answer;
    }

  private:
    std::unique_ptr<helper::Session> m_session;
};

} // namespace

std::unique_ptr<AppService> ConnectingAppService()
{
    return std::make_unique<SessionService>();
}

} // namespace doctor
