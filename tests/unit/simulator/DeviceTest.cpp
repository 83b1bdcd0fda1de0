#include "simulator/protocol/Device.h"

#include <gtest/gtest.h>

TEST(DeviceTest, IsTheSameForAllSpellingsOfItsFolder)
{
    sim::Device const device(L"C:\\a folder\\device");
    EXPECT_EQ(device.PipeName(), sim::Device(L"c:/A Folder/x/../Device/").PipeName());
    EXPECT_NE(device.PipeName(), sim::Device(L"C:\\a folder\\device2").PipeName());
}
