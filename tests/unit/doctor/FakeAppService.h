#pragma once
#include "doctor/live/AppService.h"

#include <vector>

namespace test
{

// A service that answers as a test says.
class FakeAppService : public doctor::AppService
{
  public:
    std::optional<doctor::ConnectionStatus> status = doctor::ConnectionStatus::Success;
    doctor::ChannelAnswer answer = {
        doctor::ResponseStatus::Success,
        helper::Session::Message{L"UpdatedChannelURIAvailable", L"https://db5p.notify.windows.com/?token=abcdefghijk"},
        std::chrono::milliseconds(40)};
    std::int32_t openError = 0;
    std::int32_t askError = 0;
    std::vector<std::chrono::milliseconds> limits; // of each call

    std::optional<doctor::ConnectionStatus> Open(std::chrono::milliseconds limit) override
    {
        limits.push_back(limit);
        return openError == 0 ? status : throw winrt::hresult_error(openError);
    }

    doctor::ChannelAnswer AskForChannel(std::chrono::milliseconds limit) override
    {
        limits.push_back(limit);
        return askError == 0 ? answer : throw winrt::hresult_error(askError);
    }
};

} // namespace test
