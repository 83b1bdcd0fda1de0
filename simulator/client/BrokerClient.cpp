#include "simulator/client/BrokerClient.h"

#include "simulator/base/Error.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/BrokerPipe.h"
#include "simulator/protocol/Encoding.h"

namespace sim
{

namespace
{

constexpr wchar_t brokerEnded[] = L"the device's broker has ended: the device is off";

} // namespace

std::unique_ptr<BrokerClient> BrokerClient::Connect(Device const& device)
{
    return std::make_unique<BrokerClient>(NeedBroker(device, ProgramPath()));
}

bool BrokerClient::StopRunning(Device const& device)
{
    auto pipe = FindBroker(device);
    if (!pipe)
    {
        return false;
    }
    BrokerClient(std::move(pipe)).Stop();
    return true;
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

AnyAnswer BrokerClient::AnswerTo(AnyRequest request)
{
    Send(Request{0, std::move(request)});
    auto message = NextMessage();
    for (; !std::holds_alternative<Answer>(message); message = NextMessage())
    {
        KeepEvent(std::move(message));
    }
    if (auto const* const refused = std::get_if<Refused>(&std::get<Answer>(message).content))
    {
        throw Error(refused->reason);
    }
    return std::get<Answer>(std::move(message)).content;
}

void BrokerClient::Follow()
{
    Send(sim::Follow{});
}

std::optional<Event> BrokerClient::NextEvent()
{
    while (auto message = m_inbox->Take())
    {
        KeepEvent(std::move(*message));
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

void BrokerClient::KeepEvent(ToProcess message)
{
    if (auto* const happened = std::get_if<EventHappened>(&message))
    {
        m_events.push_back(std::move(happened->event));
    }
}

} // namespace sim
