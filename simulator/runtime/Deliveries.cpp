#include "simulator/runtime/Deliveries.h"

#include "simulator/runtime/Address.h"

#include <utility>
#include <windows.h>

namespace sim
{

namespace
{

// Where a thread keeps its turn. Not thread_local: GCC's own goes through a thread library that at times does not know
// the threads of the system's pool, and then writes to address 0x68.
DWORD TurnSlot()
{
    static auto const slot = TlsAlloc();
    return slot;
}

} // namespace

class Deliveries::Turn
{
  public:
    Turn(Deliveries& deliveries, std::wstring const& queueName) : m_deliveries(deliveries), m_queueName(queueName)
    {
        TlsSetValue(TurnSlot(), this);
    }

    Turn(Turn const&) = delete;
    Turn& operator=(Turn const&) = delete;

    ~Turn()
    {
        TlsSetValue(TurnSlot(), nullptr);
        PassOn();
    }

    void PassOn()
    {
        if (!std::exchange(m_isOver, true))
        {
            m_deliveries.m_work.Run(
                [&deliveries = m_deliveries, queueName = m_queueName] { deliveries.DeliverNext(queueName); });
        }
    }

    // The thread's own; null when it has none.
    static Turn* Current() { return static_cast<Turn*>(TlsGetValue(TurnSlot())); }

  private:
    Deliveries& m_deliveries;
    std::wstring const& m_queueName;
    bool m_isOver = false;
};

Deliveries::~Deliveries()
{
    {
        std::lock_guard const lock(m_mutex);
        for (auto& [queueName, messages] : m_waiting)
        {
            messages.clear();
        }
    }
    m_work.Wait();
}

void Deliveries::Listen(Listener listener)
{
    std::lock_guard const lock(m_mutex);
    m_listener = std::move(listener);
}

void Deliveries::Add(Message message)
{
    auto const queueName = QueueOf(message);
    std::lock_guard const lock(m_mutex);
    auto const [queue, isFirst] = m_waiting.try_emplace(queueName);
    queue->second.push_back(std::move(message));
    if (isFirst)
    {
        m_work.Run([this, queueName] { DeliverNext(queueName); });
    }
}

void Deliveries::PassOn()
{
    if (auto* const turn = Turn::Current())
    {
        turn->PassOn();
    }
}

void Deliveries::DeliverNext(std::wstring const& queueName)
{
    Message message;
    {
        std::lock_guard const lock(m_mutex);
        auto const queue = m_waiting.find(queueName);
        if (queue->second.empty())
        {
            m_waiting.erase(queue);
            return;
        }
        message = std::move(queue->second.front());
        queue->second.pop_front();
    }
    Turn const turn(*this, queueName);
    m_listener(message);
}

} // namespace sim
