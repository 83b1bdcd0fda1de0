#include "helper/Commands.h"

#include "console/Console.h"
#include "helper/FailureText.h"
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

// Messages are distinguished by "NewMessage" alone: the first one that the request does not expect means that the app
// could not do it.
Outcome WaitForMessage(Session& session, Arguments const& arguments)
{
    std::chrono::milliseconds const timeout(arguments.timeoutMilliseconds);
    auto const message = session.Wait(timeout);
    if (!message)
    {
        console::WriteErrorLine(L"helper: " + NoMessageText(timeout, session.HowItEnded()));
        return Outcome::NoAnswer;
    }
    auto const isExpected = message->newMessage == arguments.expectedMessage;
    return isExpected && (message->uri || !arguments.needsUri) ? Outcome::Done : Outcome::NotDone;
}

Outcome Ask(Session& session, Arguments const& arguments)
{
    std::chrono::milliseconds const timeout(arguments.timeoutMilliseconds);
    auto const response = session.Send(RequestOf(arguments), timeout);
    if (!response || response.Status() != AppServiceResponseStatus::Success)
    {
        console::WriteErrorLine(L"helper: " + (response ? FailureText(response.Status()) : NoAnswerText(timeout)));
        return Outcome::NoAnswer;
    }
    auto const content = response.Message();
    if (content && content.Size() > 0)
    {
        console::WriteLine(L"response: " + MessageText(content));
    }
    return arguments.expectedMessage.empty() ? Outcome::Done : WaitForMessage(session, arguments);
}

} // namespace

Outcome Run(Arguments const& arguments)
{
    Session session([](ValueSet const& message) { console::WriteLine(L"message: " + MessageText(message)); });
    auto const status = session.Open(packageFamilyName, appServiceName);
    if (status != AppServiceConnectionStatus::Success)
    {
        console::WriteErrorLine(L"helper: " + FailureText(status));
        return Outcome::NoConnection;
    }
    auto const outcome = arguments.request.empty() ? Outcome::Done : Ask(session, arguments);
    if (arguments.watch)
    {
        console::WriteLine(L"closed: " + session.WaitForEnd());
    }
    return outcome;
}

} // namespace helper
