#include "explore/log/LogPlay.h"

#include "explore/harness/Chosen.h"

#include <gtest/gtest.h>
#include <string_view>

using namespace explore;

namespace
{

using Kind = Decision::Kind;

constexpr ProcessNumber starting = 0;
constexpr ProcessNumber rotating = 1;
constexpr Decision kill{Kind::Fault, static_cast<FaultNumber>(Fault::Kill)};

// Kills a process when the other one has copied the log and not yet emptied it. How many kills are excused.
std::size_t ExcusesOfKill(ProcessNumber killed)
{
    LogPlay play(*FindNamed(Stories(), "start-x-rotation"));
    unsigned dispositions = 0;
    auto hasSwitched = false;
    auto hasKilled = false;
    play.Run([&](Turn const& turn) -> Decision {
        if (dispositions < 2)
        {
            std::string_view const call = play.System().kernel.PendingOf(rotating);
            dispositions += call == "SetFileInformation" ? 1 : 0;
            return {Kind::Run, rotating};
        }
        if (!std::exchange(hasSwitched, true))
        {
            return {Kind::Run, killed};
        }
        return std::exchange(hasKilled, true) ? Decision{Kind::Run, turn.Ordinary()} : kill;
    });
    EXPECT_TRUE(hasKilled);
    return play.Record().doubled.size();
}

} // namespace

TEST(LogPlayTest, LetsTheKillOfARotatingProcessDoubleLines)
{
    EXPECT_EQ(ExcusesOfKill(rotating), 1u);
}

TEST(LogPlayTest, LetsTheKillOfAnotherProcessDoubleNothing)
{
    EXPECT_EQ(ExcusesOfKill(starting), 0u);
}

TEST(LogPlayTest, FillsNoLogOnAFullDisk)
{
    constexpr Decision full{Kind::Fault, static_cast<FaultNumber>(Fault::Full)};
    LogPlay play(*FindNamed(Stories(), "rotation-x-rotation"));
    play.Run([&](Turn const& turn) {
        auto const isAboutToFill = std::string_view(play.System().kernel.PendingOf(0)) == "fills the log";
        return isAboutToFill && !play.System().files.IsFull() ? full : Decision{Kind::Run, turn.Ordinary()};
    });
    EXPECT_EQ(play.Record().rotations, 1u);
}
