#include "simulator/runtime/Deliveries.h"

#include "tests/unit/simulator/BackgroundApp.h"

using test::Arrivals;
using test::Signal;

namespace
{

sim::Message Request(wchar_t const* connection, wchar_t const* number)
{
    return {L"request", connection, L"service", number, L""};
}

} // namespace

TEST(Deliveries, KeepTheOrderOfEachAddress)
{
    Arrivals<std::wstring> got;
    sim::PoolWork work;
    sim::Deliveries deliveries(work);
    deliveries.Listen([&](sim::Message const& message) { got.Add(message[3]); });
    for (int i = 0; i < 1000; ++i)
    {
        deliveries.Add(Request(L"1", std::to_wstring(i).c_str()));
    }
    for (int i = 0; i < 1000; ++i)
    {
        EXPECT_EQ(got.Next(), std::to_wstring(i));
    }
}

TEST(Deliveries, OfOtherAddressesPassOneWhoseHandlerBlocks)
{
    Arrivals<std::wstring> got;
    Signal release;
    sim::PoolWork work;
    sim::Deliveries deliveries(work);
    deliveries.Listen([&](sim::Message const& message) {
        got.Add(message[1] + L"." + message[3]);
        if (message[3] == L"blocks")
        {
            release.Wait();
        }
    });
    deliveries.Add(Request(L"1", L"blocks"));
    EXPECT_EQ(got.Next(), L"1.blocks");
    deliveries.Add(Request(L"1", L"waits"));
    deliveries.Add(Request(L"2", L"passes"));
    EXPECT_EQ(got.Next(), L"2.passes");
    release.Set();
    EXPECT_EQ(got.Next(), L"1.waits");
}

TEST(Deliveries, OfTheTaskOfAnAppServiceFollowThoseOfItsConnection)
{
    Arrivals<std::wstring> got;
    Signal release;
    sim::PoolWork work;
    sim::Deliveries deliveries(work);
    deliveries.Listen([&](sim::Message const& message) {
        got.Add(message[0] + L" " + message[1]);
        if (message[0] == L"service-closed")
        {
            release.Wait();
        }
    });
    deliveries.Add({L"service-closed", L"1", L"service", L"0"});
    EXPECT_EQ(got.Next(), L"service-closed 1");
    deliveries.Add({L"cancel", L"7", L"1", L"10"});
    deliveries.Add({L"ended", L"7", L"1"});
    deliveries.Add({L"cancel", L"8", L"", L"10"});
    EXPECT_EQ(got.Next(), L"cancel 8");
    release.Set();
    EXPECT_EQ(got.Next(), L"cancel 7");
    EXPECT_EQ(got.Next(), L"ended 7");
}

TEST(Deliveries, OfOneAddressGoOnBesideAHandlerThatHasPassedOn)
{
    Arrivals<std::wstring> got;
    Signal release;
    sim::PoolWork work;
    sim::Deliveries deliveries(work);
    deliveries.Listen([&](sim::Message const& message) {
        got.Add(message[3]);
        if (message[3] == L"blocks")
        {
            sim::Deliveries::PassOn();
            release.Wait();
        }
    });
    deliveries.Add(Request(L"1", L"blocks"));
    deliveries.Add(Request(L"1", L"passes"));
    EXPECT_EQ(got.Next(), L"blocks");
    EXPECT_EQ(got.Next(), L"passes");
    release.Set();
}
