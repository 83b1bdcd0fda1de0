#include "simulator/runtime/MessageRouter.h"

#include "simulator/base/Text.h"
#include "simulator/runtime/CurrentHost.h"
#include "simulator/testing/LocalDevice.h"
#include "tests/unit/simulator/BackgroundApp.h"

using test::Arrivals;
using test::Signal;

namespace
{

using Message = sim::MessageRouter::Message;
using sim::Address;
using sim::ConnectionEnd;

constexpr Address serviceOf1 = Address::Of(ConnectionEnd::Service, 1);
constexpr Address serviceOf2 = Address::Of(ConnectionEnd::Service, 2);

constexpr Address Instance(std::uint32_t number)
{
    return {Address::Kind::Instance, number};
}

Message Request(std::uint32_t connection, std::wstring const& name)
{
    return sim::RequestArrived{connection, ConnectionEnd::Service, 1, sim::ToUtf8(name)};
}

std::wstring NameOf(Message const& message)
{
    return sim::FromUtf8(std::get<sim::RequestArrived>(message).set);
}

class MessageRouter : public testing::Test
{
  protected:
    ~MessageRouter() override { m_router.Close(); }

    // What arrives there is told by its name; the one of the name "blocks" is then kept until m_release.
    void Listen(Address address)
    {
        m_router.AddReceiver(address, [this](Message const& message) {
            m_got.Add(NameOf(message));
            if (NameOf(message) == L"blocks")
            {
                m_release.Wait();
            }
        });
    }

    // The kinds of messages about an instance.
    void ListenToInstance(std::uint32_t instance)
    {
        m_router.AddReceiver(Instance(instance), [this, instance](Message const& message) {
            auto const isCancellation = std::holds_alternative<sim::TaskCancelled>(message);
            m_got.Add((isCancellation ? L"cancelled " : L"ended ") + std::to_wstring(instance));
        });
    }

    sim::LocalDevice m_device;
    Arrivals<std::wstring> m_got;
    Signal m_release;
    sim::PoolWork m_work;
    sim::MessageRouter m_router{sim::CurrentHost(), m_work};
};

} // namespace

TEST_F(MessageRouter, KeepsTheOrderOfEachAddress)
{
    Listen(serviceOf1);
    for (int i = 0; i < 1000; ++i)
    {
        m_router.Add(Request(1, std::to_wstring(i)));
    }
    for (int i = 0; i < 1000; ++i)
    {
        EXPECT_EQ(m_got.Next(), std::to_wstring(i));
    }
}

TEST_F(MessageRouter, DeliversToOtherAddressesWhileAReceiverBlocks)
{
    Listen(serviceOf1);
    Listen(serviceOf2);
    m_router.Add(Request(1, L"blocks"));
    EXPECT_EQ(m_got.Next(), L"blocks");
    m_router.Add(Request(1, L"waits"));
    m_router.Add(Request(2, L"passes"));
    EXPECT_EQ(m_got.Next(), L"passes");
    m_release.Set();
    EXPECT_EQ(m_got.Next(), L"waits");
}

TEST_F(MessageRouter, KeepsTheOrderOfATaskAmongTheMessagesOfItsConnection)
{
    m_router.AddReceiver(serviceOf1, [this](Message const&) {
        m_got.Add(L"closed");
        m_release.Wait();
    });
    ListenToInstance(7);
    ListenToInstance(8);
    m_router.Add(sim::OtherEndClosed{1, ConnectionEnd::Service, sim::ClosedStatus::Completed});
    EXPECT_EQ(m_got.Next(), L"closed");
    m_router.Add(sim::TaskCancelled{7, 1, 10});
    m_router.Add(sim::TaskEnded{7, 1});
    m_router.Add(sim::TaskCancelled{8, 0, 10});
    EXPECT_EQ(m_got.Next(), L"cancelled 8");
    m_release.Set();
    EXPECT_EQ(m_got.Next(), L"cancelled 7");
    EXPECT_EQ(m_got.Next(), L"ended 7");
}

TEST_F(MessageRouter, DeliversTheNextMessageOnceAReceiverHasReleasedItsQueue)
{
    m_router.AddReceiver(serviceOf1, [this](Message const& message) {
        m_got.Add(NameOf(message));
        if (NameOf(message) == L"blocks")
        {
            sim::MessageRouter::ReleaseQueue();
            m_release.Wait();
        }
    });
    m_router.Add(Request(1, L"blocks"));
    m_router.Add(Request(1, L"passes"));
    EXPECT_EQ(m_got.Next(), L"blocks");
    EXPECT_EQ(m_got.Next(), L"passes");
    m_release.Set();
}

TEST_F(MessageRouter, DropsWhatIsForNobody)
{
    m_router.Add(Request(1, L"lost"));
    m_work.Wait();
    Listen(serviceOf1);
    m_router.Add(Request(1, L"heard"));
    EXPECT_EQ(m_got.Next(), L"heard");
}

TEST_F(MessageRouter, KeepsWhatIsForNobodyWhileAConnectionIsBeingOpened)
{
    {
        sim::MessageRouter::OpeningScope const opening(m_router);
        m_router.Add(Request(1, L"early"));
        Listen(serviceOf1);
    }
    EXPECT_EQ(m_got.Next(), L"early");
}

TEST_F(MessageRouter, DeliversNothingOnceClosed)
{
    Listen(serviceOf1);
    m_router.Close();
    m_router.Add(Request(1, L"late"));
    m_work.Wait();
    Listen(serviceOf1);
    m_router.Add(Request(1, L"later"));
    m_work.Wait();
    m_got.Add(L"nothing came");
    EXPECT_EQ(m_got.Next(), L"nothing came");
}

TEST_F(MessageRouter, CallsReceiversAsTheProcessOfItsHost)
{
    auto const caller = m_device.Caller();
    sim::MessageRouter router(*caller, m_work);
    Signal hasRun;
    sim::Host const* host = nullptr;
    router.AddReceiver(serviceOf1, [&](Message const&) {
        host = &sim::CurrentHost();
        hasRun.Set();
    });
    router.Add(Request(1, L""));
    hasRun.Wait();
    EXPECT_EQ(host, caller.get());
    EXPECT_NE(&sim::CurrentHost(), caller.get());
}
