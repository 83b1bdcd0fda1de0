// service_client SEMAPHORE: a desktop program that talks to the app's service as a test tells it to, and releases the
// semaphore for each message that comes. Says "ready", then answers each line that it reads with one that it writes:
//   open                        opened STATUS        (AppServiceConnectionStatus)
//   ask COUNT AHEAD COMMAND...  succeeded COUNT      so many requests in a row, the commands by turns, AHEAD of them at
//                                                    most on the way at once
//   close                       closed
// Ends with its input.
#include "helper/PackageFacts.h"
#include "service/Messages.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

#include <cstdio>
#include <deque>
#include <string>
#include <vector>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation::Collections;

namespace
{

AppServiceConnection Connection(HANDLE messages)
{
    AppServiceConnection const connection;
    connection.PackageFamilyName(packageFamilyName);
    connection.AppServiceName(appServiceName);
    connection.RequestReceived([messages](auto&&...) { ReleaseSemaphore(messages, 1, nullptr); });
    return connection;
}

using Operation = winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse>;

Operation Send(AppServiceConnection const& connection, std::wstring const& command)
{
    ValueSet const request;
    request.Insert(VelmoNotificationClient::Messages::commandKey, winrt::box_value(winrt::hstring(command)));
    return connection.SendMessageAsync(request);
}

// words: ask COUNT AHEAD COMMAND...
int Ask(AppServiceConnection const& connection, std::vector<std::wstring> const& words)
{
    constexpr std::size_t firstCommand = 3;
    auto const count = std::stoul(words[1]);
    auto const ahead = std::stoul(words[2]);
    auto succeeded = 0;
    std::deque<Operation> onTheWay;
    auto const finishFirst = [&] {
        succeeded += onTheWay.front().get().Status() == AppServiceResponseStatus::Success ? 1 : 0;
        onTheWay.pop_front();
    };
    for (std::size_t request = 0; request < count; ++request)
    {
        if (onTheWay.size() == ahead)
        {
            finishFirst();
        }
        onTheWay.push_back(Send(connection, words[firstCommand + request % (words.size() - firstCommand)]));
    }
    while (!onTheWay.empty())
    {
        finishFirst();
    }
    return succeeded;
}

void Answer(char const* text)
{
    std::printf("%s\n", text);
    std::fflush(stdout);
}

void Answer(char const* text, int number)
{
    Answer((std::string(text) + " " + std::to_string(number)).c_str());
}

void Serve(HANDLE messages)
{
    AppServiceConnection connection = nullptr;
    Answer("ready");
    char line[256];
    while (std::fgets(line, sizeof line, stdin))
    {
        auto const words = sim::SplitWords(sim::FromUtf8(line));
        if (words[0] == L"open")
        {
            connection = Connection(messages);
            Answer("opened", static_cast<int>(connection.OpenAsync().get()));
        }
        else if (words[0] == L"ask")
        {
            Answer("succeeded", Ask(connection, words));
        }
        else if (words[0] == L"close")
        {
            connection.Close();
            Answer("closed");
        }
    }
}

} // namespace

// The runtime calls it by this name.
int wmain(int, wchar_t** arguments) // NOLINT(misc-use-internal-linkage)
try
{
    sim::Handle const messages(OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, arguments[1]));
    winrt::init_apartment();
    Serve(messages.Get());
    return 0;
}
catch (winrt::hresult_error const& error)
{
    Answer("failed", error.code());
    return 1;
}
