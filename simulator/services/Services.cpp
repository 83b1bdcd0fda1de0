#include "simulator/services/Services.h"

#include "simulator/model/Error.h"
#include "simulator/model/Event.h"
#include "simulator/model/Text.h"

namespace sim
{

namespace
{

constexpr auto elementNotFound = static_cast<std::int32_t>(0x80070490);

std::wstring Code(std::int32_t result)
{
    return Hex(static_cast<std::uint32_t>(result));
}

// Whether it is the message of that verb, with that many words after it.
bool Is(Message const& message, std::wstring_view verb, std::size_t words)
{
    return message.front() == verb && message.size() == words + 1;
}

} // namespace

Services::Services(Device const& device, Outside outside, Limits limits, std::mutex& mutex)
    : m_outside(std::move(outside)), m_clock(device.ClockFile()), m_channel(device.ChannelFile(), m_outside, m_clock),
      m_instances(m_outside, limits, m_alarms), m_router(m_outside, m_instances),
      m_tasks(device.TasksFile(), m_outside, m_clock, m_instances), m_alarms(mutex)
{
}

void Services::Ask(std::shared_ptr<Peer> const& from, Message const& request, Answer const& answer)
try
{
    if (Is(request, L"open-app-service", 2))
    {
        m_router.Open(from, request[1], request[2], answer);
    }
    else if (Is(request, L"send", 3))
    {
        m_router.Send(*from, request[1], request[2], request[3], answer);
    }
    else
    {
        auto const known = AnswerTo(*from, request);
        answer(known ? *known : Message{L"error", L"the platform knows no request " + request.front()});
    }
}
catch (Error const& error)
{
    answer({L"error", error.Message()});
}

// nullopt for a request that it does not know.
std::optional<Message> Services::AnswerTo(Peer const& from, Message const& request)
{
    if (Is(request, L"respond", 2))
    {
        return m_router.Respond(request[1], request[2]);
    }
    if (Is(request, L"create-channel", 0))
    {
        if (!IsApp(from))
        {
            return Message{L"channel", Code(elementNotFound)};
        }
        auto const& channel = m_channel.Create();
        return Message{L"channel", Code(0), channel.uri, std::to_wstring(channel.expiry)};
    }
    if (Is(request, L"register-task", 4))
    {
        auto const registration =
            IsApp(from)
                ? m_tasks.Register(request[1], request[2], ParseNumber(request[3]).value_or(0), request[4] == L"1")
                : BackgroundTasks::Registration{elementNotFound, {}};
        return Message{L"registered", Code(registration.result), registration.id};
    }
    if (Is(request, L"tasks", 0))
    {
        Message message = {L"tasks"};
        for (auto const& task : m_tasks.All())
        {
            message.insert(message.end(), {task.id, task.name});
        }
        return IsApp(from) ? message : Message{L"tasks"};
    }
    if (Is(request, L"unregister-task", 2))
    {
        m_tasks.Unregister(request[1], request[2] == L"1");
        return Message{L"unregistered", Code(0)};
    }
    return std::nullopt;
}

void Services::Tell(std::shared_ptr<Peer> const& from, Message const& words)
{
    if (Is(words, L"request-completed", 1))
    {
        m_router.RequestCompleted(words[1]);
    }
    else if (Is(words, L"request-refused", 1))
    {
        m_router.RequestRefused(words[1]);
    }
    else if (Is(words, L"close", 2))
    {
        m_router.Close(words[1], words[2]);
    }
    else if (Is(words, L"task-returned", 1))
    {
        m_instances.Returned(from, words[1]);
    }
    else if (Is(words, L"task-completed", 1))
    {
        m_instances.Completed(words[1]);
    }
}

void Services::Taken(std::shared_ptr<Peer> const& from, std::wstring const& instance)
{
    m_instances.Taken(from, instance);
}

void Services::Lost(std::wstring const& instance)
{
    m_instances.Lost(instance);
}

void Services::Gone(Peer const& from, bool isApp)
{
    m_router.CallerGone(from);
    if (isApp)
    {
        m_instances.ProcessGone(from);
    }
}

void Services::PackageRemoved()
{
    m_tasks.Clear();
    m_channel.Remove();
}

std::wstring Services::Push(std::wstring const& payload)
{
    m_channel.ClockAdvanced();
    return m_tasks.Push(m_channel, payload);
}

void Services::AdvanceClock(std::int64_t minutes)
{
    m_clock.Advance(minutes);
    m_outside.report(L"clock-advanced", {Detail(L"to", m_clock.Text())});
    m_channel.ClockAdvanced();
    m_tasks.RunDue();
}

void Services::RevokeChannel()
{
    m_channel.Revoke();
}

void Services::ReplaceChannel(std::wstring uri)
{
    m_channel.Replace(std::move(uri));
}

void Services::CancelTasks(int reason)
{
    m_instances.CancelAll(reason);
}

std::wstring Services::Status() const
{
    return L"clock     " + m_clock.Text() + L"\nchannel   " + m_channel.Status() + L"\ntasks     registered: " +
           std::to_wstring(m_tasks.All().size()) + L", running: " + std::to_wstring(m_instances.Count()) +
           L"\nservice   connections: " + std::to_wstring(m_router.Count());
}

std::wstring Services::Tasks() const
{
    return L"registered:" + m_tasks.Text() + L"\nrunning:" + m_instances.Text();
}

} // namespace sim
