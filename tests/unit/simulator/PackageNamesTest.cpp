#include "simulator/model/PackageNames.h"
#include "simulator/model/Device.h"

#include <gtest/gtest.h>

TEST(PackageNames, PublisherIdIsThatOfThePlatform)
{
    EXPECT_EQ(sim::PublisherId(L"CN=Velmo"), L"m7dy57p66fpam");
}

TEST(PackageNames, FamilyNameIsNameAndPublisherId)
{
    EXPECT_EQ(sim::PackageFamilyName(L"Velmo.NotificationClient", L"CN=Velmo"),
              L"Velmo.NotificationClient_m7dy57p66fpam");
}

TEST(PackageNames, ServerNameIsTheSameEachTimeAndAnotherForEachApp)
{
    auto const name = sim::ServerName(L"Family_abc", L"App");
    EXPECT_EQ(name, sim::ServerName(L"Family_abc", L"App"));
    EXPECT_NE(name, sim::ServerName(L"Family_abc", L"Other"));
    EXPECT_EQ(name.find(L"App.AppX"), 0u);
    EXPECT_EQ(name.substr(name.size() - 4), L".mca");
}

TEST(Device, IsTheSameForAllSpellingsOfItsFolder)
{
    sim::Device const device(L"C:\\a folder\\device");
    EXPECT_EQ(device.PipeName(), sim::Device(L"c:/A Folder/x/../Device/").PipeName());
    EXPECT_NE(device.PipeName(), sim::Device(L"C:\\a folder\\device2").PipeName());
}
