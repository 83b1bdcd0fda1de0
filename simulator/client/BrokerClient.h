#pragma once
#include "simulator/client/Inbox.h"
#include "simulator/model/Device.h"
#include "simulator/model/Event.h"
#include "simulator/transport/PipeChannel.h"

#include <deque>
#include <memory>
#include <optional>

namespace sim
{

// A command line's connection to its device's broker. One thread uses it.
class BrokerClient
{
  public:
    // Starts the broker (this program again) when none serves the device. Throws Error.
    static std::unique_ptr<BrokerClient> Connect(Device const& device);

    // Null when no broker serves the device.
    static std::unique_ptr<BrokerClient> ConnectToRunning(Device const& device);

    // pipe: connected to the broker.
    explicit BrokerClient(Handle pipe);
    BrokerClient(BrokerClient const&) = delete;
    BrokerClient& operator=(BrokerClient const&) = delete;
    ~BrokerClient();

    // Waits for the answer and gives its text. Throws Error with the broker's refusal, or when it has gone.
    std::wstring Ask(Message const& request);

    // From now on all events of the device arrive, those of its past first.
    void Follow();

    // Signalled when NextEvent may have something. Throws from NextEvent when the broker has gone.
    HANDLE Arrived() const noexcept { return m_inbox->Arrived(); }

    // The next event that has arrived, if one has; those that came during Ask among them.
    std::optional<Event> NextEvent();

    // Switches the device off; returns when its broker has ended.
    void Stop();

  private:
    void Sort(Message message);

    std::shared_ptr<Inbox<Message>> m_inbox; // shared with the channel's handlers
    std::shared_ptr<PipeChannel> m_channel;
    std::deque<Message> m_answers;
    std::deque<Event> m_events;
};

} // namespace sim
