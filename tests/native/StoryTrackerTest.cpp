#include "doctor/stories/StoryTracker.h"

#include "tests/native/AllLines.h"
#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

using doctor::Ending;
using doctor::StoryTracker;
using doctor::Told;
using enum doctor::Line;
using test::At;

namespace
{

class StoryTrackerTest : public testing::Test
{
  protected:
    void Add(double seconds, std::uint32_t thread, doctor::Line line)
    {
        m_tracker.Add({At(seconds), 0, ++m_number, line}, thread);
    }

    // "name: line..line" of what was told with that ending.
    std::vector<std::string> ToldWith(Ending ending) const
    {
        std::vector<std::string> texts;
        for (auto const& told : m_told)
        {
            if (told.ending == ending)
            {
                texts.push_back(std::string(told.story->name) + ": " + std::to_string(told.begin.number) +
                                (told.last ? ".." + std::to_string(told.last->number) : ""));
            }
        }
        return texts;
    }

    using Texts = std::vector<std::string>;

    std::vector<Told> m_told;
    std::uint64_t m_number = 0;
    StoryTracker m_tracker{[this](Told const& told) { m_told.push_back(told); }};
};

} // namespace

TEST_F(StoryTrackerTest, TellsEachStoryWithItsLines)
{
    Add(0, 1, Started);
    Add(1, 1, BackgroundActivated);
    Add(1, 1, ServiceActivation);
    Add(1, 1, Connecting);
    Add(1, 1, Connected);
    Add(9, 5, ServiceClosed);
    EXPECT_EQ(ToldWith(Ending::Ended), (Texts{"start-up: 1..2", "background activation: 2..3",
                                              "opening of the service: 3..5", "connection: 5..6"}));
    m_told.clear();
    m_tracker.End({});
    EXPECT_EQ(ToldWith(Ending::Unlimited), (Texts{"service task: 4..6", "process: 1..6"}));
    EXPECT_EQ(m_told.size(), 2u);
}

TEST_F(StoryTrackerTest, EndsAStoryOfAThreadByItsThreadOnly)
{
    Add(0, 1, RegistrationWait);
    Add(1, 2, RegistrationSignalled);
    EXPECT_EQ(ToldWith(Ending::Ended), Texts());
    Add(2, 1, RegistrationSignalled);
    EXPECT_EQ(ToldWith(Ending::Ended), Texts{"wait for the registration: 1..3"});
}

TEST_F(StoryTrackerTest, EndsOneStoryOfAGroupByALine)
{
    Add(0, 1, ChannelRequested);
    Add(1, 2, ChannelRequested);
    Add(2, 3, ChannelReceived);
    EXPECT_EQ(ToldWith(Ending::Ended), Texts{"channel for the helper: 1..3"});
    Add(3, 3, ChannelThrew); // a step of the first request, whose reply it ends
    EXPECT_EQ(ToldWith(Ending::Ended),
              (Texts{"channel for the helper: 1..3", "reading of the URI: 3..4", "request for the channel: 1..4"}));
}

TEST_F(StoryTrackerTest, EndsTheNewestLaunch)
{
    Add(0, 1, LaunchForTimer);
    Add(1, 1, LaunchForPush);
    Add(2, 7, LaunchDone);
    EXPECT_EQ(ToldWith(Ending::Ended), Texts{"launch for a push: 2..3"});
}

TEST_F(StoryTrackerTest, TellsWhatIsOverdueWithTheNextLine)
{
    Add(0, 1, LaunchForPush);
    Add(30, 1, Other);
    EXPECT_EQ(ToldWith(Ending::Overdue), Texts());
    Add(30.001, 1, Other);
    EXPECT_EQ(ToldWith(Ending::Overdue), Texts{"launch for a push: 1"});
}

TEST_F(StoryTrackerTest, TakesTwoLinesThatChangedPlacesForNoChangeOfTheClock)
{
    Add(0, 1, LaunchForPush);
    Add(10, 2, Other);
    Add(6, 3, Other);
    Add(29, 2, Other);
    EXPECT_EQ(ToldWith(Ending::Overdue), Texts());
}

TEST_F(StoryTrackerTest, WaitsForNothingOfAProcessThatHasASuccessor)
{
    Add(0, 1, Started);
    Add(1, 1, LaunchForPush);
    Add(2, 9, Started);
    m_tracker.End(At(3));
    EXPECT_EQ(ToldWith(Ending::ProcessEnded), (Texts{"launch for a push: 2..3", "start-up: 1..3", "process: 1..3"}));
}

TEST_F(StoryTrackerTest, WaitsForNothingOfAProcessThatLeftOutACertainLine)
{
    Add(0, 1, ServiceActivation);
    Add(1, 2, LaunchForPush);
    m_tracker.End(At(15));
    EXPECT_EQ(ToldWith(Ending::ProcessEnded), (Texts{"launch for a push: 2", "opening of the service: 1"}));
}

TEST_F(StoryTrackerTest, TellsWhatAnExitCutShort)
{
    Add(0, 1, Started);
    Add(0.5, 1, Launched);
    Add(1, 2, RegistrationRequested);
    Add(2, 1, Exiting);
    Add(3, 2, RemovalRequested); // it goes on
    Add(6.9, 4, Other);
    EXPECT_EQ(ToldWith(Ending::Exited), Texts());
    Add(7.1, 4, Other);
    EXPECT_EQ(ToldWith(Ending::Exited), Texts{"request to register: 3..4"});
    Add(100, 4, Other);
    EXPECT_EQ(ToldWith(Ending::Exited), Texts{"request to register: 3..4"});
    EXPECT_EQ(ToldWith(Ending::Overdue), Texts{"request to remove the tasks: 5"});
}

TEST_F(StoryTrackerTest, KeepsAFewOfStoriesWithoutAnEnd)
{
    Add(0, 1, Started);
    for (auto at = 0u; at < 500; ++at)
    {
        Add(1, at, ExitRequested);
        Add(1, at, BackgroundActivated);
    }
    m_told.clear();
    m_tracker.End({});
    EXPECT_EQ(m_told.size(), doctor::AppProcess::mostOpen);
    EXPECT_EQ(ToldWith(Ending::Unlimited).front(), "process: 1..1001");
}

TEST_F(StoryTrackerTest, KeepsAFewProcesses)
{
    for (auto at = 0u; at < 100; ++at)
    {
        Add(at * 0.001, 1, Started);
    }
    EXPECT_EQ(ToldWith(Ending::ProcessEnded).size(), 2 * (100 - StoryTracker::mostProcesses));
}

TEST_F(StoryTrackerTest, ForgetsAProcessThatIsOver)
{
    Add(0, 1, Started);
    Add(0.1, 1, ProtocolActivated);
    Add(1, 1, Started);
    EXPECT_EQ(ToldWith(Ending::Ended), (Texts{"start-up: 1..2", "process: 1..2"}));
    EXPECT_EQ(m_told.size(), 2u);
}

// Whatever the lines: each story is told once, and the counts of a report agree.
TEST_F(StoryTrackerTest, TakesAnyLinesInAnyOrder)
{
    auto const all = test::AllLines();
    std::mt19937 random(1);
    auto const below = [&](std::size_t end) { return random() % end; };
    auto seconds = 0.0;
    for (auto at = 0; at < 5'000; ++at)
    {
        seconds += static_cast<double>(below(100)) / 10 - (below(500) == 0 ? 4000 : 0);
        Add(seconds, static_cast<std::uint32_t>(below(8)), all[below(all.size())]);
    }
    m_tracker.End({});
    std::map<std::pair<doctor::Story const*, std::uint64_t>, int> times;
    for (auto const& told : m_told)
    {
        EXPECT_EQ(++times[std::pair(told.story, told.begin.number)], 1);
        auto const isBehind = told.last && told.last->number >= told.begin.number;
        EXPECT_TRUE(isBehind || (told.ending != Ending::Ended && told.ending != Ending::Exited));
        EXPECT_EQ(told.end != nullptr, told.ending == Ending::Ended);
    }
    EXPECT_GT(m_told.size(), 1'500u);
}
