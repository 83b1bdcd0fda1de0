#include "simulator/package/PackageNames.h"

#include <gtest/gtest.h>

TEST(PackageNamesTest, PublisherIdIsThatOfThePlatform)
{
    EXPECT_EQ(sim::PublisherId(L"CN=Velmo"), L"m7dy57p66fpam");
}

TEST(PackageNamesTest, FamilyNameIsNameAndPublisherId)
{
    EXPECT_EQ(sim::PackageFamilyName(L"Velmo.NotificationClient", L"CN=Velmo"),
              L"Velmo.NotificationClient_m7dy57p66fpam");
}

TEST(PackageNamesTest, ServerNameIsTheSameEachTimeAndAnotherForEachApp)
{
    auto const name = sim::ServerName(L"Family_abc", L"App");
    EXPECT_EQ(name, sim::ServerName(L"Family_abc", L"App"));
    EXPECT_NE(name, sim::ServerName(L"Family_abc", L"Other"));
    EXPECT_EQ(name.find(L"App.AppX"), 0u);
    EXPECT_EQ(name.substr(name.size() - 4), L".mca");
}
