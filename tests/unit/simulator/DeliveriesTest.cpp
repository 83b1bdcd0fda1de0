#include "simulator/runtime/Deliveries.h"

#include "tests/unit/simulator/BackgroundApp.h"

#include <functional>

using test::Arrivals;
using test::Signal;

namespace
{

sim::Message Request(wchar_t const* connection, wchar_t const* number)
{
    return {L"request", connection, L"service", number, L""};
}

class Deliveries : public testing::Test
{
  protected:
    using Message = sim::Message;

    // What is delivered is told under a name; a message for which `blocks` holds is then kept until m_release.
    void Listen(std::function<std::wstring(Message const&)> const& name,
                std::function<bool(Message const&)> const& blocks)
    {
        m_deliveries.Listen([=, this](Message const& message) {
            m_got.Add(name(message));
            if (blocks(message))
            {
                m_release.Wait();
            }
        });
    }

    Arrivals<std::wstring> m_got;
    Signal m_release;
    sim::PoolWork m_work;
    sim::Deliveries m_deliveries{m_work};
};

} // namespace

TEST_F(Deliveries, KeepTheOrderOfEachAddress)
{
    m_deliveries.Listen([&](Message const& message) { m_got.Add(message[3]); });
    for (int i = 0; i < 1000; ++i)
    {
        m_deliveries.Add(Request(L"1", std::to_wstring(i).c_str()));
    }
    for (int i = 0; i < 1000; ++i)
    {
        EXPECT_EQ(m_got.Next(), std::to_wstring(i));
    }
}

TEST_F(Deliveries, OfOtherAddressesPassOneWhoseHandlerBlocks)
{
    Listen([](Message const& message) { return message[1] + L"." + message[3]; },
           [](Message const& message) { return message[3] == L"blocks"; });
    m_deliveries.Add(Request(L"1", L"blocks"));
    EXPECT_EQ(m_got.Next(), L"1.blocks");
    m_deliveries.Add(Request(L"1", L"waits"));
    m_deliveries.Add(Request(L"2", L"passes"));
    EXPECT_EQ(m_got.Next(), L"2.passes");
    m_release.Set();
    EXPECT_EQ(m_got.Next(), L"1.waits");
}

TEST_F(Deliveries, OfTheTaskOfAnAppServiceFollowThoseOfItsConnection)
{
    Listen([](Message const& message) { return message[0] + L" " + message[1]; },
           [](Message const& message) { return message[0] == L"service-closed"; });
    m_deliveries.Add({L"service-closed", L"1", L"service", L"0"});
    EXPECT_EQ(m_got.Next(), L"service-closed 1");
    m_deliveries.Add({L"cancel", L"7", L"1", L"10"});
    m_deliveries.Add({L"ended", L"7", L"1"});
    m_deliveries.Add({L"cancel", L"8", L"", L"10"});
    EXPECT_EQ(m_got.Next(), L"cancel 8");
    m_release.Set();
    EXPECT_EQ(m_got.Next(), L"cancel 7");
    EXPECT_EQ(m_got.Next(), L"ended 7");
}

TEST_F(Deliveries, OfOneAddressGoOnBesideAHandlerThatHasPassedOn)
{
    m_deliveries.Listen([&](Message const& message) {
        m_got.Add(message[3]);
        if (message[3] == L"blocks")
        {
            sim::Deliveries::PassOn();
            m_release.Wait();
        }
    });
    m_deliveries.Add(Request(L"1", L"blocks"));
    m_deliveries.Add(Request(L"1", L"passes"));
    EXPECT_EQ(m_got.Next(), L"blocks");
    EXPECT_EQ(m_got.Next(), L"passes");
    m_release.Set();
}
