#include "simulator/client/BrokerClient.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Encoding.h"

namespace sim
{

namespace
{

constexpr wchar_t brokerEnded[] = L"the device's broker has ended: the device is off";

// brokerId: its process; 0: unknown.
std::wstring HungText(unsigned long brokerId)
{
    auto const process = brokerId == 0 ? std::wstring() : L" (process " + std::to_wstring(brokerId) + L")";
    return L"the device's broker" + process + L" has not answered for " + std::to_wstring(hungAfter / 1'000) +
           L" s: end its process, and the next command starts another one";
}

// Returns when the broker serves, or when another one proved to be quicker.
void StartBroker(Device const& device)
{
    constexpr DWORD limitMilliseconds = 60'000;
    Handle const ready(CreateEventW(nullptr, TRUE, FALSE, device.ReadyEventName().c_str()));
    auto const process = StartProcess(ProgramPath(), {L"broker"});
    HANDLE const either[] = {ready.Get(), process.Get()};
    WaitForMultipleObjects(ARRAYSIZE(either), either, FALSE, limitMilliseconds);
}

} // namespace

std::unique_ptr<BrokerClient> BrokerClient::Connect(Device const& device)
{
    // A broker found or started may be one that is being switched off; the next one is not.
    constexpr int attempts = 5;
    auto client = ConnectToRunning(device);
    for (int attempt = 0; !client && attempt < attempts; ++attempt)
    {
        MakeFolder(device.Home());
        StartBroker(device);
        client = ConnectToRunning(device);
    }
    if (!client)
    {
        throw Error(L"no broker comes up for the device " + device.Home());
    }
    return client;
}

std::unique_ptr<BrokerClient> BrokerClient::ConnectToRunning(Device const& device)
{
    auto pipe = ConnectPipe(device.PipeName());
    if (!pipe && GetLastError() == ERROR_SEM_TIMEOUT)
    {
        throw Error(HungText(0));
    }
    return pipe ? std::make_unique<BrokerClient>(std::move(pipe)) : nullptr;
}

BrokerClient::BrokerClient(Handle pipe, unsigned answerLimit)
    : m_answerLimit(answerLimit), m_inbox(std::make_shared<Inbox<ToProcess>>())
{
    GetNamedPipeServerProcessId(pipe.Get(), &m_brokerId);
    m_channel = PipeChannel::Open(std::move(pipe));
    m_channel->Start({[inbox = m_inbox](std::string_view message) { inbox->Add(Decode<ToProcess>(message)); },
                      [inbox = m_inbox] { inbox->End(); }});
}

BrokerClient::~BrokerClient()
{
    m_channel->Close();
}

std::wstring BrokerClient::Ask(AnyRequest request)
{
    Send(Request{0, std::move(request)}); // answered in their order
    while (m_answers.empty())
    {
        Sort(NextMessage());
    }
    auto const answer = std::move(m_answers.front().content);
    m_answers.pop_front();
    if (auto const* const refused = std::get_if<Refused>(&answer))
    {
        throw Error(refused->reason);
    }
    return std::get<Shown>(answer).text;
}

void BrokerClient::Follow()
{
    Send(sim::Follow{});
}

std::optional<Event> BrokerClient::NextEvent()
{
    while (auto message = m_inbox->Take())
    {
        Sort(std::move(*message));
    }
    if (m_events.empty())
    {
        if (m_inbox->HasEnded())
        {
            throw Error(brokerEnded);
        }
        return std::nullopt;
    }
    auto event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

void BrokerClient::Stop()
{
    constexpr DWORD limitMilliseconds = 30'000;
    auto const id = ParseNumber(Ask(ShowProcess{}));
    Handle const broker(OpenProcess(SYNCHRONIZE, FALSE, id.value_or(0)));
    Send(SwitchOff{});
    if (broker && WaitForSingleObject(broker.Get(), limitMilliseconds) != WAIT_OBJECT_0)
    {
        throw Error(L"the device's broker does not end");
    }
}

void BrokerClient::Send(FromProcess const& message)
{
    m_channel->Send(Encode(message));
}

ToProcess BrokerClient::NextMessage()
{
    for (;;)
    {
        if (auto message = m_inbox->Take())
        {
            return std::move(*message);
        }
        if (m_inbox->HasEnded())
        {
            throw Error(brokerEnded);
        }
        if (WaitForSingleObject(m_inbox->Arrived(), m_answerLimit) == WAIT_TIMEOUT)
        {
            throw Error(HungText(m_brokerId));
        }
    }
}

void BrokerClient::Sort(ToProcess message)
{
    if (auto* const answer = std::get_if<Answer>(&message))
    {
        m_answers.push_back(std::move(*answer));
    }
    else if (auto* const happened = std::get_if<EventHappened>(&message))
    {
        m_events.push_back(std::move(happened->event));
    }
}

} // namespace sim
