#pragma once
#include "simulator/base/Inbox.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/Event.h"
#include "simulator/protocol/Messages.h"
#include "simulator/protocol/Pipe.h"
#include "simulator/protocol/PipeChannel.h"

#include <deque>
#include <memory>
#include <optional>

namespace sim
{

// A command line's connection to its device's broker. Not thread-safe.
class BrokerClient
{
  public:
    // Starts the broker (this program again) when none serves the device. Throws Error.
    static std::unique_ptr<BrokerClient> Connect(Device const& device);

    // Switches the device off; false when it was off. Throws Error when its broker hangs.
    static bool StopRunning(Device const& device);

    // pipe: connected to the broker. answerLimit: in milliseconds.
    explicit BrokerClient(Handle pipe, unsigned answerLimit = hungAfter);
    BrokerClient(BrokerClient const&) = delete;
    BrokerClient& operator=(BrokerClient const&) = delete;
    ~BrokerClient();

    // Waits for the answer. Throws Error with the reason of a refusal, or when the broker ends or hangs.
    AnyAnswer AnswerTo(AnyRequest request);

    // The same for an answer that is a text.
    std::wstring Ask(AnyRequest request) { return std::get<Shown>(AnswerTo(std::move(request))).text; }

    // From now on all events of the device arrive, past ones first.
    void Follow();

    // Signalled when an event may have arrived or the broker has ended.
    HANDLE Arrived() const noexcept { return m_inbox->Arrived(); }

    // The next event that has arrived, also during Ask, if there is one. Throws Error when the broker has ended.
    std::optional<Event> NextEvent();

    // Switches the device off; returns when its broker has ended. Throws Error.
    void Stop();

  private:
    void Send(FromProcess const& message);
    ToProcess NextMessage();
    void KeepEvent(ToProcess message);

    unsigned const m_answerLimit;
    unsigned long m_brokerId = 0;              // its process
    std::shared_ptr<Inbox<ToProcess>> m_inbox; // shared with the channel's handlers
    std::shared_ptr<PipeChannel> m_channel;
    std::deque<Event> m_events;
};

} // namespace sim
