#include "explore/kill/Play.h"

#include "explore/harness/Hash.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <iterator>

namespace explore::kill
{

namespace
{

// In the place of the channel's URI, which is another one in each play.
constexpr std::u16string_view anyUri = u"{uri}";
constexpr std::u16string_view uriLine = u"Received Channel URI is ";
constexpr std::u16string_view foundLine = u"Background task found going to unregister it";

std::u16string Wide(std::wstring const& text)
{
    return {text.begin(), text.end()};
}

std::vector<std::u16string> MessagesOf(std::vector<LogText> const& logs, std::vector<std::u16string> const& old)
{
    std::vector<std::u16string> messages;
    for (auto const& log : logs)
    {
        for (auto const& line : log.lines)
        {
            auto const fields = FieldsOf(line);
            if (fields && !IsHeader(fields->message) && std::ranges::find(old, line) == old.end())
            {
                messages.push_back(fields->message);
            }
        }
    }
    return messages;
}

std::vector<std::u16string> WithUri(std::vector<std::u16string> messages, sim::DeviceState const& state)
{
    auto uri = state.channel ? state.channel->uri : std::wstring();
    sim::ReplaceAll(uri, L"%", L"%%"); // as it is logged
    for (auto& message : messages)
    {
        if (message.starts_with(uriLine) && message.ends_with(anyUri))
        {
            message = std::u16string(uriLine) + Wide(uri);
        }
    }
    return messages;
}

std::vector<std::string> TasksOf(sim::DeviceState const& state)
{
    std::vector<std::string> names;
    std::ranges::transform(state.tasks.registered, std::back_inserter(names),
                           [](auto const& task) { return sim::ToUtf8(task.name); });
    return names;
}

bool EndsLine(Watch const& watch, Call const& call)
{
    return std::string_view(watch.NameOf(call)) == "NtReleaseMutant";
}

// A call of the log releases its mutex when the line is written. The opening of the log does that as well, before the
// first line of the process's first thread.
std::map<std::uint32_t, unsigned> LinesReturned(Watch const& watch)
{
    std::map<std::uint32_t, unsigned> lines;
    auto isOpening = true;
    for (auto const& call : watch.Calls())
    {
        if (EndsLine(watch, call) && !std::exchange(isOpening, false))
        {
            ++lines[call.thread];
        }
    }
    return lines;
}

std::vector<std::uint32_t> KindsOf(Watch const& watch)
{
    std::vector<std::uint32_t> kinds;
    for (std::uint32_t line = 0; auto const& call : watch.Calls())
    {
        kinds.push_back(line * Watched::mostFunctions + call.function);
        line += EndsLine(watch, call) ? 1 : 0;
    }
    return kinds;
}

std::vector<std::string> NamesOf(Watch const& watch)
{
    std::vector<std::string> names;
    std::vector<std::uint32_t> threads;
    for (auto const& call : watch.Calls())
    {
        if (std::ranges::find(threads, call.thread) == threads.end())
        {
            threads.push_back(call.thread);
        }
        auto const thread = std::ranges::find(threads, call.thread) - threads.begin();
        names.push_back("thread " + std::to_string(thread) + "  " + watch.NameOf(call));
    }
    return names;
}

std::uint64_t StateOf(Facts const& facts, std::vector<std::string> const& tasks)
{
    Hash hash;
    for (auto const& log : facts.left)
    {
        hash.Add((log.isCopy ? 1u : 0u) + (log.hasMark ? 2u : 0u));
        hash.Add(log.lines.size());
        hash.Add(log.rest.size());
        hash.Add(log.size);
    }
    for (auto const& task : tasks)
    {
        hash.Add(std::string_view(task));
    }
    return hash.Value();
}

std::uint64_t SizeOfLog(std::vector<LogText> const& logs)
{
    auto const found = std::ranges::find(logs, false, &LogText::isCopy);
    return found == logs.end() ? 0 : found->size;
}

void AddTrouble(Facts& facts, std::string trouble)
{
    if (!trouble.empty())
    {
        facts.troubles.push_back(std::move(trouble));
    }
}

// What each process of the story should leave registered.
std::vector<std::string> TasksMeant(Story const& story)
{
    return story.request == Request::Register ? std::vector<std::string>{"PushNotificationBGTask", "URITimerBGTask"}
                                              : std::vector<std::string>();
}

// By itself it ends well, or not at all.
void LookAtFirstProcess(Stage const& stage, Facts& facts)
{
    if (!stage.Watched().IsKilled() && !stage.Runs() && stage.ExitCode() != L"0")
    {
        AddTrouble(facts, "crashes: the first process ends with " + sim::ToUtf8(stage.ExitCode()));
    }
}

void LookAtSecondProcess(Stage const& stage, Story const& story, Facts& facts)
{
    if (!stage.Runs() && stage.ExitCode() != L"0")
    {
        AddTrouble(facts, "crashes: the next process ends with " + sim::ToUtf8(stage.ExitCode()));
    }
    if (story.request == Request::Register && stage.HelperCode() != 0ul)
    {
        AddTrouble(facts, "not registered: the helper's second request ends with " +
                              std::to_string(stage.HelperCode().value_or(0)));
    }
}

std::vector<std::u16string> Again(std::vector<std::u16string> messages, std::size_t tasksFound)
{
    messages.insert(messages.end(), tasksFound, std::u16string(foundLine));
    return messages;
}

} // namespace

Reference Rehearse(Stage& stage, Story const& story)
{
    auto const old = OldLogOf(story.log);
    stage.Prepare(old);
    auto const& watch = stage.Watched();
    watch.Await(std::nullopt);
    auto trouble = stage.Ask(story);
    Reference reference{.messages = MessagesOf(stage.Logs(), old.lines)};
    reference.kinds = KindsOf(watch);
    std::size_t lines = 0;
    for (auto const& [thread, returned] : LinesReturned(watch))
    {
        lines += returned;
    }
    auto const tasks = TasksOf(stage.State());
    trouble += stage.EndApp();
    if (!watch.HasCome())
    {
        throw sim::Error(L"the app's process has not loaded " WATCH_LIBRARY);
    }
    if (!trouble.empty() || lines != reference.messages.size() || tasks != TasksMeant(story))
    {
        throw sim::Error(L"the story does not go as it should: " + std::to_wstring(lines) + L" calls of the log, " +
                         std::to_wstring(reference.messages.size()) + L" lines; " + sim::FromUtf8(trouble));
    }
    for (auto& message : reference.messages)
    {
        if (message.starts_with(uriLine))
        {
            message = std::u16string(uriLine) + std::u16string(anyUri);
        }
    }
    return reference;
}

Played PlayOnce(Stage& stage, Story const& story, Reference const& reference, std::uint32_t killAt)
{
    auto const old = OldLogOf(story.log);
    auto const& watch = stage.Watched();
    Facts facts;
    facts.old = old.lines;
    facts.tasksMeant = TasksMeant(story);
    stage.Prepare(old);
    watch.Await(killAt);
    AddTrouble(facts, stage.Ask(story));
    LookAtFirstProcess(stage, facts);
    AddTrouble(facts, stage.EndApp()); // where the call did not come
    auto const isEnded = watch.IsKilled();
    facts.left = stage.Logs();
    facts.returned = LinesReturned(watch);
    auto const tasksLeft = TasksOf(stage.State());
    auto const logSize = SizeOfLog(facts.left);
    facts.isLogAtLimit = story.log == LogBefore::AtLimit && logSize >= old.size;

    AddTrouble(facts, stage.Ask(story));
    facts.end = stage.Logs();
    auto const state = stage.State();
    facts.tasks = TasksOf(state);
    facts.allowed = WithUri(reference.messages, state);
    facts.again = Again(facts.allowed, tasksLeft.size());
    LookAtSecondProcess(stage, story, facts);
    AddTrouble(facts, stage.EndApp());

    Played played{Judge(facts), isEnded, StateOf(facts, tasksLeft), NamesOf(watch)};
    played.verdict.outcome +=
        (story.request == Request::Register ? ", " + std::to_string(tasksLeft.size()) + " tasks" : "");
    played.verdict.outcome += isEnded ? "" : ", not ended: fewer calls";
    return played;
}

} // namespace explore::kill
