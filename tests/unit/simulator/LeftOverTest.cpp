#include "simulator/doctor/LeftOver.h"

#include "simulator/base/Process.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

using Ids = std::vector<unsigned long>;

// This process, as the journal would have it.
std::wstring const ownId = L"pid=" + std::to_wstring(GetCurrentProcessId());
std::wstring const ownCommand = L"command=\"" + sim::ProgramPath() + L"\" -ServerName:App";

std::vector<sim::Event> Started(std::wstring const& kind = L"app-started")
{
    return {{10, kind, {ownId, ownCommand}}};
}

} // namespace

TEST(LeftOver, RunsSinceBeforeTheDeviceWasSwitchedOn)
{
    EXPECT_EQ(sim::LeftOver(Started(), 20), Ids{GetCurrentProcessId()});
    EXPECT_EQ(sim::LeftOver(Started(L"desktop-started"), 20), Ids{GetCurrentProcessId()});
}

TEST(LeftOver, IsNotWhatTheDeviceHasStarted)
{
    EXPECT_EQ(sim::LeftOver(Started(), 10), Ids{});
}

TEST(LeftOver, IsWhatAKilledBrokerHadStarted)
{
    auto journal = Started();
    journal.push_back({15, L"broker-lost", {}});
    EXPECT_EQ(sim::LeftOver(journal, 5), Ids{GetCurrentProcessId()});
}

TEST(LeftOver, IsNotWhatHasEnded)
{
    for (auto const* kind : {L"app-exited", L"app-crashed", L"app-terminated", L"desktop-exited"})
    {
        auto journal = Started();
        journal.push_back({11, kind, {ownId}});
        EXPECT_EQ(sim::LeftOver(journal, 20), Ids{});
    }
    EXPECT_EQ(sim::LeftOver({{10, L"app-started", {L"pid=4294967292", ownCommand}}}, 20), Ids{}); // none has that id
}

TEST(LeftOver, IsNotAnotherProgramWithTheSameId)
{
    EXPECT_EQ(sim::LeftOver({{10, L"app-started", {ownId, L"command=\"C:\\another.exe\""}}}, 20), Ids{});
}
