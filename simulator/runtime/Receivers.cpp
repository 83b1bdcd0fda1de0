#include "simulator/runtime/Receivers.h"

#include "simulator/runtime/Address.h"

namespace sim
{

Receivers& Receivers::Instance()
{
    // Never destroyed: at the end of the process its other threads may still be in here.
    static auto* const receivers = new Receivers;
    return *receivers;
}

void Receivers::Open()
{
    std::lock_guard const lock(m_mutex);
    m_isOpen = true;
}

void Receivers::Close()
{
    std::map<std::wstring, Receive> dropped; // after the lock: they may hold anything
    {
        std::lock_guard const lock(m_mutex);
        m_isOpen = false;
        dropped.swap(m_receivers);
        m_changed.notify_all();
    }
    dropped.clear();
    m_work.Wait();
}

void Receivers::Add(std::wstring const& address, Receive receive)
{
    std::lock_guard const lock(m_mutex);
    if (m_isOpen)
    {
        m_receivers[address] = std::move(receive);
        m_changed.notify_all();
    }
}

void Receivers::Remove(std::wstring const& address)
{
    std::unique_lock lock(m_mutex);
    auto const removed = m_receivers.extract(address);
    lock.unlock(); // before it goes
}

Receivers::Opening::Opening()
{
    auto& receivers = Instance();
    std::lock_guard const lock(receivers.m_mutex);
    ++receivers.m_openings;
}

Receivers::Opening::~Opening()
{
    auto& receivers = Instance();
    std::lock_guard const lock(receivers.m_mutex);
    --receivers.m_openings;
    receivers.m_changed.notify_all();
}

void Receivers::Deliver(Message const& message)
{
    Receive receive;
    {
        std::unique_lock lock(m_mutex);
        auto found = m_receivers.end();
        m_changed.wait(lock, [&] {
            found = m_receivers.find(AddressOf(message));
            return found != m_receivers.end() || m_openings == 0 || !m_isOpen;
        });
        if (found == m_receivers.end())
        {
            return;
        }
        receive = found->second;
    }
    receive(message);
}

void Receivers::Run(std::function<void()> function)
{
    m_work.Run(std::move(function));
}

} // namespace sim
