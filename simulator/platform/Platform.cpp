#include "simulator/platform/Platform.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Overloaded.h"
#include "simulator/base/Text.h"
#include "simulator/base/TypeName.h"

#include <algorithm>
#include <iterator>

namespace sim
{

namespace
{

constexpr auto elementNotFound = static_cast<std::int32_t>(0x80070490);
constexpr auto unspecifiedFailure = static_cast<std::int32_t>(0x80004005);

// Prefixes the message of an exception from the work with its context.
template <typename Work>
void WithContext(std::wstring const& context, Work const& work)
try
{
    work();
}
catch (std::exception const& error)
{
    throw Error(context + L": " + ReasonOf(error));
}

} // namespace

Platform::Platform(Device const& device, TimeSource const& time, std::unique_ptr<ProcessStarter> processes,
                   std::function<void()> switchOff, Limits const& limits, JournalFile journalFile)
    : m_device(device), m_dispatcher(time, [this](std::exception const& error) { NoteFailure(ReasonOf(error)); }),
      m_journal((MakeFolder(device.Home()), journalFile == JournalFile::Kept ? device.JournalFile() : std::wstring()),
                time),
      m_session(device.SessionFile(), m_journal), m_clock({device.ClockFile(), m_journal}, time),
      m_registration(m_device, m_journal), m_switchOff(std::move(switchOff)), m_processes(std::move(processes)),
      m_app(m_device, m_registration, m_journal, *m_processes),
      m_desktop(m_device, m_registration, m_journal, *m_processes), m_channel(m_journal, m_clock),
      m_instances(m_app, m_journal, m_dispatcher, limits),
      m_lifetime(m_app, m_instances, m_journal, m_dispatcher, limits),
      m_services(m_registration, m_app, m_instances, m_journal), m_tasks(m_journal, m_clock, m_instances)
{
    LoadState();
    m_journal.Listen([this](Event const& event) {
        for (auto const& follower : m_followers)
        {
            follower->Send(EventHappened{event});
        }
    });
    m_processes->Listen([this](unsigned long id, unsigned long exitCode) {
        m_dispatcher.Post(
            [this, id, exitCode] { WithContext(L"the end of a process", [&] { ProcessEnded(id, exitCode); }); });
    });
    m_sessionStart = m_journal.Now();
    if (m_session.Exists())
    {
        RestoreSession();
    }
    SaveSession();
}

void Platform::Received(std::shared_ptr<Peer> from, FromProcess message)
{
    m_dispatcher.Post([this, from = std::move(from), message = std::move(message)] {
        std::visit([&]<typename Message>(
                       Message const& said) { WithContext(TypeName<Message>(), [&] { Handle(from, said); }); },
                   message);
    });
}

void Platform::Closed(std::shared_ptr<Peer> from)
{
    m_dispatcher.Post(
        [this, from = std::move(from)] { WithContext(L"the end of a connection", [&] { ConnectionEnded(from); }); });
}

void Platform::Register(Package package)
{
    m_registration.Set(std::move(package));
    LoadState();
}

void Platform::ExpectApp(unsigned long processId)
{
    m_app.Expect(processId);
}

std::optional<std::uint32_t> Platform::StartInstance(TaskInstances::Content content)
{
    return m_instances.Start(std::move(content));
}

void Platform::CancelInstance(std::uint32_t instance, std::uint32_t reason)
{
    m_instances.Cancel(instance, reason);
}

void Platform::ReplaceChannel(std::wstring uri)
{
    m_channel.Replace(std::move(uri));
}

void Platform::SwitchOff()
{
    m_app.Kill();
    m_desktop.KillAll();
    m_sessionStart.reset();
    m_session.Remove();
}

void Platform::RestoreSession()
{
    m_session.Read([this](StateFile::Words const& words) {
        if (words.size() == 2 && words[0] == L"since")
        {
            m_sessionStart = NumberIn(words[1], L"time");
        }
        else if (words.size() > 1 && words[0] == L"fault")
        {
            m_faults.Set(ParseFault({words.begin() + 1, words.end()}));
        }
        else
        {
            throw Error(L"it is neither since TIME nor fault CALL KIND …");
        }
    });
    auto const events = ReadJournal(m_device.JournalFile());
    auto const last = [&](std::wstring_view name) {
        std::uint32_t number = 0;
        for (auto const& event : events)
        {
            auto const value = event.time < *m_sessionStart ? std::nullopt : event.Detail(name);
            number = std::max(number, value ? ParseNumber(*value).value_or(0) : 0);
        }
        return number;
    };
    auto const lastInstance = last(L"instance");
    m_instances.SetLastNumber(lastInstance);
    m_services.SetLastNumber(last(L"connection"));
    m_tasks.SetLastNumber(last(L"wake"));
    m_journal.Add(L"broker-lost", {Detail(L"last-instance", std::to_wstring(lastInstance)),
                                   Detail(L"faults", std::to_wstring(m_faults.All().size()))});
}

void Platform::SaveSession()
{
    if (!m_sessionStart)
    {
        return;
    }
    std::vector<StateFile::Words> lines = {{L"since", std::to_wstring(*m_sessionStart)}};
    for (auto const& fault : m_faults.All())
    {
        lines.push_back(fault.Words());
        lines.back().insert(lines.back().begin(), L"fault");
    }
    m_session.Write(lines);
}

void Platform::Handle(From const& from, Hello const& message)
{
    if (!m_app.IsExpected(message.processId))
    {
        from->Send(NotTheApp{});
        return;
    }
    for (auto const& fault : m_faults.All())
    {
        from->Send(FaultSet{fault});
    }
    auto const& package = m_registration.Require();
    from->Send(Welcome{package.FamilyName(), package.folder});
    m_app.Attach(from); // after the faults: it sends the first activations
}

void Platform::Handle(From const& from, ActivationTaken const& message)
{
    auto const activation = m_app.Taken(*from, message.activation);
    if (!activation)
    {
        return;
    }
    m_instances.Taken(from, InstanceOf(*activation));
    if (std::holds_alternative<Suspension>(activation->content))
    {
        m_lifetime.SuspendingTaken();
    }
}

void Platform::Handle(From const& from, sim::ExitAnnounced const&)
{
    m_app.ExitAnnounced(*from);
}

void Platform::Handle(From const& from, sim::SuspendingCompleted const&)
{
    if (m_app.IsPeer(*from))
    {
        m_lifetime.SuspendingCompleted();
    }
}

void Platform::Handle(From const& from, FaultTriggered const& message)
{
    auto const fault = m_app.IsPeer(*from) ? m_faults.Use(message.call) : std::nullopt;
    if (fault)
    {
        m_journal.Add(L"fault", fault->Details());
        if (fault->times != Fault::always)
        {
            SaveSession();
        }
    }
}

void Platform::Handle(From const& from, Report const& message)
{
    if (m_app.IsPeer(*from))
    {
        m_journal.Add(message.kind, message.details);
    }
}

void Platform::Handle(From const& from, TaskReturned const& message)
{
    auto const returned = m_app.IsPeer(*from) ? m_instances.Returned(from, message.instance) : std::nullopt;
    if (!returned)
    {
        return;
    }
    if (auto const* const service = std::get_if<ServiceStart>(&*returned))
    {
        m_services.ServiceReturned(service->connection, from);
    }
    m_instances.SendCancellation(message.instance);
}

void Platform::Handle(From const& from, TaskCompleted const& message)
{
    auto const ended = m_app.IsPeer(*from) ? m_instances.Completed(message.instance) : std::nullopt;
    if (ended)
    {
        Ended(*ended);
        ContinueStop();
        m_lifetime.CheckIdle();
    }
}

void Platform::Handle(From const& from, RequestCompleted const& message)
{
    m_services.Completed(*from, message);
}

void Platform::Handle(From const& from, RequestRefused const& message)
{
    m_services.Refused(*from, message);
}

void Platform::Handle(From const& from, ConnectionClosed const& message)
{
    m_services.Closed(*from, message);
}

void Platform::Handle(From const& from, Request const& message)
try
{
    std::visit([&](auto const& request) { Answer(from, message.number, request); }, message.content);
}
catch (std::exception const& error)
{
    ReplyTo(from, message.number)(Refused{ReasonOf(error)});
}

void Platform::Handle(From const& from, Follow const&)
{
    for (auto const& event : ReadJournal(m_device.JournalFile()))
    {
        from->Send(EventHappened{event});
    }
    m_followers.push_back(from);
}

void Platform::Handle(From const&, sim::SwitchOff const&)
{
    m_switchOff();
}

Platform::AnyReply Platform::ReplyTo(From const& from, std::uint32_t number)
{
    return [from, number](AnyAnswer const& answer) { from->Send(sim::Answer{number, answer}); };
}

void Platform::Answer(From const& from, std::uint32_t number, OpenConnection const& request)
{
    m_services.Open(from, request, ReplyTo(from, number));
}

void Platform::Answer(From const& from, std::uint32_t number, SendRequest const& request)
{
    m_services.Send(*from, request, ReplyTo(from, number));
}

template <typename Request>
void Platform::Answer(From const& from, std::uint32_t number, Request const& request)
{
    typename Request::Answer const answer = AnswerTo(*from, request);
    ReplyTo(from, number)(answer);
}

ResponseTaken Platform::AnswerTo(Peer const& from, GiveResponse const& request)
{
    return m_services.Respond(from, request);
}

ChannelCreated Platform::AnswerTo(Peer const& from, CreateChannel const&)
{
    if (!m_app.IsPeer(from))
    {
        return {elementNotFound};
    }
    auto const& channel = m_channel.Create();
    return {0, channel.uri, channel.expiry};
}

TaskRegistered Platform::AnswerTo(Peer const& from, RegisterTask const& request)
{
    return m_app.IsPeer(from) ? m_tasks.Register(request) : TaskRegistered{elementNotFound};
}

std::vector<std::wstring> Platform::TaskNames() const
{
    std::vector<std::wstring> names;
    std::ranges::transform(m_tasks.All(), std::back_inserter(names), &RegisteredTask::name);
    return names;
}

TaskList Platform::AnswerTo(Peer const& from, ListTasks const&)
{
    TaskList list;
    if (m_app.IsPeer(from))
    {
        for (auto const& task : m_tasks.All())
        {
            list.tasks.push_back({task.id, task.name});
        }
    }
    return list;
}

TaskUnregistered Platform::AnswerTo(Peer const& from, UnregisterTask const& request)
{
    if (!m_app.IsPeer(from))
    {
        m_journal.AddRefusal<UnregisterTask>(L"id", request.id);
        return {elementNotFound};
    }
    m_tasks.Unregister(request);
    return {};
}

DesktopLaunched Platform::AnswerTo(Peer const& from, LaunchDesktop const& request)
try
{
    return {m_app.IsPeer(from) ? m_desktop.Launch(request, m_tasks.RunningWake()) : elementNotFound};
}
catch (Error const& error)
{
    NoteFailure(TypeName<LaunchDesktop>() + L": " + error.Message());
    return {unspecifiedFailure};
}

void Platform::NoteFailure(std::wstring const& reason)
{
    m_journal.Add(L"device-failed", {Detail(L"reason", reason)});
}

void Platform::ConnectionEnded(From const& from)
{
    std::erase(m_followers, from);
    m_services.CallerEnded(*from);
    for (auto const& ended : m_instances.ProcessEnded(*from))
    {
        Ended(ended); // first: the activations that waited are for the next process
    }
    Lost(m_app.ConnectionClosed(*from));
    ContinueStop();
}

void Platform::ProcessEnded(unsigned long id, unsigned long exitCode)
{
    Lost(m_app.ProcessEnded(id, exitCode));
    m_desktop.ProcessEnded(id, exitCode);
    ContinueStop();
}

void Platform::Lost(AppProcess::Activations const& activations)
{
    for (auto const& activation : activations)
    {
        if (auto const ended = m_instances.Lost(InstanceOf(activation)))
        {
            Ended(*ended);
        }
    }
}

void Platform::Ended(TaskInstances::Ended const& instance)
{
    std::visit(
        Overloaded{[&](ServiceStart const& service) { m_services.ServiceEnded(service.connection, instance.end); },
                   [&](TaskStart const& task) { m_tasks.InstanceEnded(task.instance); }},
        instance.content);
}

} // namespace sim
