#include "doctor/live/ServiceCheck.h"

#include "doctor/live/MakeFinding.h"
#include "doctor/live/Sentences.h"
#include "doctor/log/ChannelUri.h"
#include "helper/FailureText.h"
#include "service/Messages.h"

namespace doctor
{

namespace
{

Finding Refused(std::string const& what, helper::Failure const& failure)
{
    return Failed(Stage::Service, what + " (" + Narrow(failure.code) + ").", SentenceOf(failure.what),
                  SentenceOf(failure.advice));
}

Finding NotOpenedInTime(std::string const& limit)
{
    return Failed(Stage::Service, "The app service did not open within " + limit + ".",
                  "The app's process starts, but does not take the connection: it hangs, or a debugger holds it.",
                  "Look for VelmoNotificationClient.exe in the Task Manager, end it and try again.");
}

Finding NotCompleted(std::string const& limit)
{
    return Failed(Stage::Channel, "The channel did not arrive within " + limit + ".",
                  "The push service does not answer the platform, or the platform cancelled the request.",
                  "See that the device has a network on which *.notify.windows.com can be reached, and that "
                  "notifications are switched on. Then try again.");
}

Finding NoMessage()
{
    return Failed(Stage::Channel, "The app completed the request for the channel, but sent no message.",
                  "The platform refused the channel, or another program connected to the app meanwhile and got the "
                  "message.",
                  "Read the app's log: its last lines name the step. Then try again without other helpers.");
}

Finding NoUri()
{
    return Failed(Stage::Channel, "The app answered without a channel URI.",
                  "The platform refused to begin the request for the channel, or the URI could not be stored.",
                  "Read the app's log: its last lines name the step.");
}

Finding OtherMessage(std::wstring const& name)
{
    return Failed(Stage::Service, "The app answered with another message: " + Narrow(name) + ".",
                  "Another program asks the app for something at the same time.", "Try again.");
}

// A request without a response, or with one that is no success, may have had its message all the same.
std::vector<Finding> FindingsOf(ChannelAnswer const& answer, LiveOptions const& options)
{
    if (answer.response && *answer.response != ResponseStatus::Success)
    {
        return {Refused("The app did not answer the request for the channel", helper::Explain(*answer.response))};
    }
    if (!answer.message)
    {
        return {answer.response ? NoMessage() : NotCompleted(TimeText(options.limit))};
    }
    if (answer.message->newMessage != VelmoNotificationClient::Messages::updatedChannelUriAvailable)
    {
        return {OtherMessage(answer.message->newMessage)};
    }
    if (!answer.message->uri)
    {
        return {NoUri()};
    }
    auto const uri = Narrow(*answer.message->uri);
    return {Worked(Stage::Channel, "The channel arrived in " + TimeText(answer.took) + "."),
            Worked(Stage::UriStored,
                   "The app's settings hold its URI: " + (options.hasFullUris ? uri : WithShortUris(uri)) + " .")};
}

std::vector<Finding> FindingsOf(std::optional<ConnectionStatus> status, LiveOptions const& options)
{
    if (!status)
    {
        return {NotOpenedInTime(TimeText(options.limit))};
    }
    if (*status != ConnectionStatus::Success)
    {
        return {Refused("The app service does not open", helper::Explain(*status))};
    }
    return {Worked(Stage::StartUp, "The app's process runs."), Worked(Stage::Service, "The app service opens.")};
}

} // namespace

Asked AskService(AppService& service, LiveOptions const& options)
{
    Asked asked;
    auto const add = [&](std::vector<Finding> const& findings) {
        asked.findings.insert(asked.findings.end(), findings.begin(), findings.end());
    };
    try
    {
        asked.status = service.Open(options.limit);
        add(FindingsOf(asked.status, options));
        if (asked.status == ConnectionStatus::Success)
        {
            auto const answer = service.AskForChannel(options.limit);
            asked.appRuns = !answer.response || *answer.response == ResponseStatus::Success;
            add(FindingsOf(answer, options));
        }
    }
    catch (winrt::hresult_error const& error)
    {
        add({Refused("The platform does not let this program ask the app", helper::Explain(error))});
    }
    return asked;
}

} // namespace doctor
