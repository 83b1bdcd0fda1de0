#include "helper/Arguments.h"

#include "service/Messages.h"
#include "utils/Utf8.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace helper
{

namespace
{

namespace Messages = VelmoNotificationClient::Messages;

struct Command
{
    std::wstring_view name;
    wchar_t const* value; // of the request's "Command"
    wchar_t const* expectedMessage;
    bool needsUri;
};

constexpr Command commands[] = {
    {L"get-channel-uri", Messages::getChannelUri, Messages::updatedChannelUriAvailable, true},
    {L"register", Messages::registerBackgroundTask, Messages::registerBkgTaskDone, true},
    {L"unregister", Messages::unregisterBackgroundTask, Messages::unregisterBackgroundTaskDone, false},
    {L"exit", Messages::exitZeb, L"", false},
};

[[noreturn]] void Refuse(std::wstring const& text)
{
    throw UsageError(zant::ToUtf8(text).value_or("usage error"));
}

Arguments::Entry ParseEntry(std::wstring const& word)
{
    auto const equals = word.find(L'=');
    if (equals == std::wstring::npos || equals == 0)
    {
        Refuse(L"send takes KEY=VALUE, not " + word);
    }
    return {word.substr(0, equals), word.substr(equals + 1)};
}

unsigned ParseSeconds(std::wstring const& word)
{
    constexpr unsigned most = 3600;
    unsigned seconds = 0;
    for (auto const digit : word)
    {
        if (digit < L'0' || digit > L'9' || seconds > most)
        {
            Refuse(L"--timeout takes seconds, 1 to 3600, not " + word);
        }
        seconds = seconds * 10 + static_cast<unsigned>(digit - L'0');
    }
    if (seconds == 0 || seconds > most)
    {
        Refuse(L"--timeout takes seconds, 1 to 3600, not " + word);
    }
    return seconds;
}

// Takes the options out of the words.
std::vector<std::wstring> TakeOptions(std::vector<std::wstring> const& words, Arguments& arguments)
{
    std::vector<std::wstring> rest;
    for (auto word = words.begin(); word != words.end(); ++word)
    {
        if (*word == L"--watch")
        {
            arguments.watch = true;
        }
        else if (*word == L"--timeout")
        {
            if (++word == words.end())
            {
                Refuse(L"--timeout takes seconds, 1 to 3600");
            }
            arguments.timeoutMilliseconds = 1000 * ParseSeconds(*word);
        }
        else
        {
            rest.push_back(*word);
        }
    }
    return rest;
}

void ParseCommand(std::vector<std::wstring> const& words, Arguments& arguments)
{
    if (words.front() == L"send")
    {
        if (words.size() == 1)
        {
            Refuse(L"send takes at least one KEY=VALUE");
        }
        for (auto word = words.begin() + 1; word != words.end(); ++word)
        {
            arguments.request.push_back(ParseEntry(*word));
        }
        return;
    }
    auto const* const command = std::ranges::find(commands, words.front(), &Command::name);
    if (command == std::end(commands))
    {
        Refuse(L"there is no command " + words.front());
    }
    if (words.size() > 1)
    {
        Refuse(words.front() + L" takes no arguments, and was given " + words[1]);
    }
    arguments.request = {{Messages::commandKey, command->value}};
    arguments.expectedMessage = command->expectedMessage;
    arguments.needsUri = command->needsUri;
}

} // namespace

std::optional<Arguments> ParseArguments(std::vector<std::wstring> const& words)
{
    if (words.empty() || words.front() == L"help" || words.front() == L"--help")
    {
        return std::nullopt;
    }
    Arguments arguments;
    if (auto const rest = TakeOptions(words, arguments); !rest.empty())
    {
        ParseCommand(rest, arguments);
    }
    else if (!arguments.watch)
    {
        Refuse(L"give a command, --watch or both");
    }
    return arguments;
}

wchar_t const* const helpText =
    L"helper COMMAND [--watch] [--timeout SECONDS]\n"
    L"  sends a request to the notification client's app service, and prints each message "
    L"it receives\n\n"
    L"  get-channel-uri   get the push channel; its URI comes as NewCuri\n"
    L"  register          register the two background tasks\n"
    L"  unregister        remove them\n"
    L"  exit              remove them, and end the client\n"
    L"  send KEY=VALUE …  a request of your own\n\n"
    L"  --watch           stay connected until the client closes the connection; alone: "
    L"connect only\n"
    L"  --timeout SECONDS how long to wait for the answer, and then for the message (90)\n\n"
    L"exit code: 0 done · 1 the client could not do it · 2 usage error · 3 no connection · "
    L"4 no answer";

} // namespace helper
