#include "simulator/runtime/MessageRouter.h"

#include "simulator/base/Overloaded.h"
#include "simulator/runtime/CurrentHost.h"

#include <utility>
#include <windows.h>

namespace sim
{

namespace
{

// The slot for a thread's turn. Not thread_local, as in CurrentHost.cpp.
DWORD TurnSlot()
{
    static auto const slot = TlsAlloc();
    return slot;
}

Address AddressOf(MessageRouter::Message const& message)
{
    return std::visit(Overloaded{
                          [](RequestArrived const& arrived) { return Address::Of(arrived.end, arrived.connection); },
                          [](OtherEndClosed const& closed) { return Address::Of(closed.end, closed.connection); },
                          [](auto const& ofTask) { return Address{Address::Kind::Instance, ofTask.instance}; },
                      },
                      message);
}

Address QueueOf(MessageRouter::Message const& message)
{
    auto const service = std::visit(Overloaded{
                                        [](TaskCancelled const& cancelled) { return cancelled.connection; },
                                        [](TaskEnded const& ended) { return ended.connection; },
                                        [](auto const&) { return std::uint32_t{}; },
                                    },
                                    message);
    return service == 0 ? AddressOf(message) : Address::Of(ConnectionEnd::Service, service);
}

} // namespace

class MessageRouter::Turn
{
  public:
    Turn(MessageRouter& router, Address queue) : m_router(router), m_queue(queue) { TlsSetValue(TurnSlot(), this); }

    Turn(Turn const&) = delete;
    Turn& operator=(Turn const&) = delete;

    ~Turn()
    {
        TlsSetValue(TurnSlot(), nullptr);
        End();
    }

    void End()
    {
        if (!std::exchange(m_isOver, true))
        {
            m_router.m_work.Run([&router = m_router, queue = m_queue] { router.DeliverNext(queue); });
        }
    }

    // The thread's own; null when it has none.
    static Turn* Current() { return static_cast<Turn*>(TlsGetValue(TurnSlot())); }

  private:
    MessageRouter& m_router;
    Address m_queue;
    bool m_isOver = false;
};

MessageRouter::~MessageRouter()
{
    Close();
}

void MessageRouter::AddReceiver(Address address, Receiver receiver)
{
    std::lock_guard const lock(m_mutex);
    if (!m_isClosed)
    {
        m_receivers[address] = std::move(receiver);
        m_changed.notify_all();
    }
}

void MessageRouter::RemoveReceiver(Address address)
{
    std::unique_lock lock(m_mutex);
    auto const removed = m_receivers.extract(address);
    lock.unlock(); // before what the receiver holds goes
}

MessageRouter::OpeningScope::OpeningScope(MessageRouter& router) : m_router(router)
{
    std::lock_guard const lock(m_router.m_mutex);
    ++m_router.m_openings;
}

MessageRouter::OpeningScope::~OpeningScope()
{
    std::lock_guard const lock(m_router.m_mutex);
    --m_router.m_openings;
    m_router.m_changed.notify_all();
}

void MessageRouter::Add(Message message)
{
    auto const queueAddress = QueueOf(message);
    std::lock_guard const lock(m_mutex);
    if (m_isClosed)
    {
        return;
    }
    auto const [queue, isFirst] = m_waiting.try_emplace(queueAddress);
    queue->second.push_back(std::move(message));
    if (isFirst)
    {
        m_work.Run([this, queueAddress] { DeliverNext(queueAddress); });
    }
}

void MessageRouter::ReleaseQueue()
{
    if (auto* const turn = Turn::Current())
    {
        turn->End();
    }
}

void MessageRouter::Run(std::function<void()> function)
{
    m_work.Run([this, function = std::move(function)] {
        HostScope const scope(m_host);
        function();
    });
}

void MessageRouter::Close()
{
    std::map<Address, Receiver> dropped; // after the lock: they may hold objects of the app
    {
        std::lock_guard const lock(m_mutex);
        m_isClosed = true;
        dropped.swap(m_receivers);
        for (auto& [queue, messages] : m_waiting)
        {
            messages.clear();
        }
        m_changed.notify_all();
    }
    dropped.clear();
    m_work.Wait();
}

void MessageRouter::DeliverNext(Address queueAddress)
{
    std::unique_lock lock(m_mutex);
    auto const queue = m_waiting.find(queueAddress);
    if (queue->second.empty())
    {
        m_waiting.erase(queue);
        return;
    }
    auto const message = std::move(queue->second.front());
    queue->second.pop_front();
    lock.unlock();
    Turn const turn(*this, queueAddress);
    if (auto const receiver = WaitForReceiver(AddressOf(message)))
    {
        HostScope const scope(m_host);
        receiver(message);
    }
}

// Null when there is none and no connection is being opened.
MessageRouter::Receiver MessageRouter::WaitForReceiver(Address address)
{
    std::unique_lock lock(m_mutex);
    auto found = m_receivers.end();
    m_changed.wait(lock, [&] {
        found = m_receivers.find(address);
        return found != m_receivers.end() || m_openings == 0 || m_isClosed;
    });
    return found == m_receivers.end() ? nullptr : found->second;
}

} // namespace sim
