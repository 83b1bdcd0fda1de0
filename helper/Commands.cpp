#include "helper/Commands.h"

#include "helper/Console.h"
#include "helper/MessageText.h"
#include "helper/PackageFacts.h"
#include "helper/Session.h"

#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation::Collections;

namespace helper
{

namespace
{

ValueSet RequestOf(Arguments const& arguments)
{
    ValueSet const request;
    for (auto const& [key, value] : arguments.request)
    {
        request.Insert(key, winrt::box_value(value));
    }
    return request;
}

// The app tells its messages apart by "NewMessage" alone; the first one that this request does not expect says that it
// could not be done.
Outcome WaitForMessage(Session& session, Arguments const& arguments)
{
    auto message = session.Wait(std::chrono::milliseconds(arguments.timeoutMilliseconds));
    if (!message)
    {
        WriteErrorLine(L"helper: no message came");
        return Outcome::NoAnswer;
    }
    auto const isExpected = message->newMessage == arguments.expectedMessage;
    return isExpected && (message->hasUri || !arguments.needsUri) ? Outcome::Done : Outcome::NotDone;
}

Outcome Ask(Session& session, Arguments const& arguments)
{
    auto const response = session.Send(RequestOf(arguments), std::chrono::milliseconds(arguments.timeoutMilliseconds));
    if (!response || response.Status() != AppServiceResponseStatus::Success)
    {
        WriteErrorLine(response ? L"helper: no answer, status " +
                                      std::to_wstring(static_cast<std::int32_t>(response.Status()))
                                : std::wstring(L"helper: no answer in time"));
        return Outcome::NoAnswer;
    }
    auto const content = response.Message();
    if (content && content.Size() > 0)
    {
        WriteLine(L"response: " + MessageText(content));
    }
    return arguments.expectedMessage.empty() ? Outcome::Done : WaitForMessage(session, arguments);
}

} // namespace

Outcome Run(Arguments const& arguments)
{
    Session session;
    auto const status = session.Open(packageFamilyName, appServiceName);
    if (status != AppServiceConnectionStatus::Success)
    {
        WriteErrorLine(
            L"helper: no connection, status " + std::to_wstring(static_cast<std::int32_t>(status)) +
            (status == AppServiceConnectionStatus::AppNotInstalled ? L": the package is not installed" : L""));
        return Outcome::NoConnection;
    }
    auto const outcome = arguments.request.empty() ? Outcome::Done : Ask(session, arguments);
    if (arguments.watch)
    {
        WriteLine(L"closed: " + session.WaitForEnd());
    }
    return outcome;
}

} // namespace helper
