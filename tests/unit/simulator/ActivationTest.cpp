#include "simulator/protocol/Activation.h"

#include <gtest/gtest.h>

namespace
{

using Details = std::vector<std::wstring>;

sim::Activation Of(sim::Activation::Content content)
{
    return {8, std::move(content)};
}

sim::Activation const service = Of(sim::ServiceStart{3, 4, L"a.service", L"A.Package_m7dy57p66fpam"});
sim::Activation const task = Of(sim::TaskStart{5, L"id", L"A Task", sim::Trigger::Timer, L"a payload"});

} // namespace

TEST(ActivationTest, IsToldWithItsKindAndWhatItCarries)
{
    EXPECT_EQ(DetailsOf(Of(sim::UserLaunch{L"a b"})), (Details{L"kind=launch", L"arguments=a b"}));
    EXPECT_EQ(DetailsOf(Of(sim::ProtocolLaunch{L"a-protocol:x"})), (Details{L"kind=protocol", L"uri=a-protocol:x"}));
    EXPECT_EQ(DetailsOf(service), (Details{L"kind=app-service", L"name=a.service"}));
    EXPECT_EQ(DetailsOf(task), (Details{L"kind=background-task", L"name=A Task"}));
    EXPECT_EQ(DetailsOf(Of(sim::TaskStart{5, L"id", L"A Task", sim::Trigger::Timer, L"", 3})),
              (Details{L"kind=background-task", L"name=A Task", L"wake=3"}));
    EXPECT_EQ(DetailsOf(Of(sim::Suspension{})), (Details{L"kind=suspend"}));
    EXPECT_EQ(DetailsOf(Of(sim::PageRequest{L"A.Page"})), (Details{L"kind=page", L"class=A.Page"}));
}

TEST(ActivationTest, IsToldByItsKindAloneWhenItCarriesNothing)
{
    EXPECT_EQ(DetailsOf(Of(sim::UserLaunch{})), Details{L"kind=launch"});
    EXPECT_EQ(DetailsOf(Of(sim::ProtocolLaunch{})), Details{L"kind=protocol"});
}

TEST(ActivationTest, OfTheBackgroundHasAnInstance)
{
    EXPECT_EQ(InstanceOf(service), 3u);
    EXPECT_EQ(InstanceOf(task), 5u);
    EXPECT_EQ(InstanceOf(Of(sim::UserLaunch{})), 0u);
    EXPECT_EQ(InstanceOf(Of(sim::Suspension{})), 0u);
}

TEST(ActivationTest, ByTheUserShowsTheApp)
{
    EXPECT_TRUE(IsForeground(Of(sim::UserLaunch{})));
    EXPECT_TRUE(IsForeground(Of(sim::ProtocolLaunch{})));
    EXPECT_FALSE(IsForeground(service));
    EXPECT_FALSE(IsForeground(task));
    EXPECT_FALSE(IsForeground(Of(sim::Suspension{})));
    EXPECT_FALSE(IsForeground(Of(sim::PageRequest{L"A.Page"})));
}

TEST(ActivationTest, NamesItsTrigger)
{
    EXPECT_EQ(NameOf(sim::Trigger::Push), L"push");
    EXPECT_EQ(NameOf(sim::Trigger::Timer), L"timer");
}
