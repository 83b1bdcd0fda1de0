#include "explore/harness/Scheduler.h"

#include <gtest/gtest.h>

using namespace explore;

TEST(SchedulerTest, IsStuckWhereNoProcessCanGoOn)
{
    Scheduler scheduler({[](ProcessNumber) {}, [](FaultNumber, ProcessNumber) { return false; }, [] { return false; },
                         [](unsigned) {}});
    scheduler.Add([&] { scheduler.Await([] { return false; }); });
    EXPECT_EQ(scheduler.Run(nullptr), Scheduler::End::Stuck);
}

TEST(SchedulerTest, LetsTimePassWhereEachProcessWaits)
{
    auto isLater = false;
    Scheduler scheduler({[](ProcessNumber) {}, [](FaultNumber, ProcessNumber) { return false; },
                         [&] { return isLater = true; }, [](unsigned) {}});
    scheduler.Add([&] { scheduler.Await([&] { return isLater; }); });
    EXPECT_EQ(scheduler.Run(nullptr), Scheduler::End::All);
}
