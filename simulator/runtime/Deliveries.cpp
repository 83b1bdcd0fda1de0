#include "simulator/runtime/Deliveries.h"

#include "simulator/runtime/Address.h"

namespace sim
{

Deliveries::~Deliveries()
{
    {
        std::lock_guard const lock(m_mutex);
        for (auto& [address, messages] : m_waiting)
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
    auto const address = AddressOf(message);
    std::lock_guard const lock(m_mutex);
    auto const [queue, isFirst] = m_waiting.try_emplace(address);
    queue->second.push_back(std::move(message));
    if (isFirst)
    {
        m_work.Run([this, address] { DeliverFrom(address); });
    }
}

void Deliveries::DeliverFrom(std::wstring const& address)
{
    std::unique_lock lock(m_mutex);
    auto const queue = m_waiting.find(address);
    while (!queue->second.empty())
    {
        auto const message = std::move(queue->second.front());
        queue->second.pop_front();
        lock.unlock();
        m_listener(message);
        lock.lock();
    }
    m_waiting.erase(queue);
}

} // namespace sim
