#include "simulator/platform/Journal.h"

#include "simulator/base/Moment.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/simulator/ManualTime.h"

#include <gtest/gtest.h>

TEST(JournalTest, KeepsEachEventAndTellsItsListener)
{
    test::TemporaryFolder const folder;
    ManualTime const time;
    auto const path = folder / L"events.log";
    std::vector<std::wstring> heard;
    {
        sim::Journal journal(path, time);
        journal.Listen([&](sim::Event const& event) { heard.push_back(event.kind); });
        journal.Add(L"first", {sim::Detail(L"text", L"\x00E4 b")});
        journal.Add(L"second");
    }
    sim::Journal(path, time).Add(L"third");
    auto const events = sim::ReadJournal(path);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0].Detail(L"text"), L"\x00E4 b");
    EXPECT_EQ(events[2].kind, L"third");
    EXPECT_EQ(heard, (std::vector<std::wstring>{L"first", L"second"}));
}

TEST(JournalTest, IsEmptyWhenItsFileIsMissing)
{
    test::TemporaryFolder const folder;
    EXPECT_TRUE(sim::ReadJournal(folder / L"events.log").empty());
}

TEST(JournalTest, StampsItsEventsWithThePlatformsTime)
{
    test::TemporaryFolder const folder;
    ManualTime time;
    auto const path = folder / L"events.log";
    sim::Journal journal(path, time);
    journal.Add(L"first");
    time.Advance(25);
    journal.Add(L"second");
    auto const events = sim::ReadJournal(path);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].time, sim::LocalMoment(ManualTime().Utc()));
    EXPECT_EQ(events[1].time, events[0].time + 25);
}
