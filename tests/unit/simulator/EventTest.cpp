#include "simulator/model/Event.h"
#include "simulator/model/Journal.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

sim::Moment At(int hour, int minute, int second, int milliseconds)
{
    return sim::MomentOf(2024, 1, 5, hour, minute, second, milliseconds).value();
}

} // namespace

TEST(Event, IsALineWithItsTime)
{
    sim::Event const event{At(9, 30, 12, 45), L"desktop-started", {L"pid=12", L"command=\"C:\\a b.exe\" /x"}};
    EXPECT_EQ(event.Line(), L"2024-01-05 09:30:12.045 desktop-started pid=12 command='\"C:\\a b.exe\" /x'");
}

TEST(Event, ComesBackFromItsLine)
{
    sim::Event const event{At(23, 59, 59, 999), L"kind", {L"empty=", L"quotes='\"", L"plain=a=b"}};
    auto const back = sim::ParseEvent(event.Line());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->time, event.time);
    EXPECT_EQ(back->kind, event.kind);
    EXPECT_EQ(back->details, event.details);
    EXPECT_EQ(back->Detail(L"plain"), L"a=b");
    EXPECT_EQ(back->Detail(L"missing"), std::nullopt);
}

TEST(Event, IsNotReadFromAnotherLine)
{
    for (auto const* line : {L"", L"2024-01-05 09:30:12.045", L"2024-13-05 09:30:12.045 kind", L"so many words here",
                             L"2024-01-05 09:30:12.045 kind 'open", L"2024-01-05 9:30 kind"})
    {
        EXPECT_FALSE(sim::ParseEvent(line)) << line;
    }
}

TEST(Journal, KeepsEachEventAndTellsItsListener)
{
    test::TemporaryFolder const folder;
    auto const path = folder / L"events.log";
    std::vector<std::wstring> heard;
    {
        sim::Journal journal(path);
        journal.Listen([&](sim::Event const& event) { heard.push_back(event.kind); });
        journal.Add(L"first", {sim::Detail(L"text", L"\x00E4 b")});
        journal.Add(L"second");
    }
    sim::Journal(path).Add(L"third");
    auto const events = sim::ReadJournal(path);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0].Detail(L"text"), L"\x00E4 b");
    EXPECT_EQ(events[2].kind, L"third");
    EXPECT_EQ(heard, (std::vector<std::wstring>{L"first", L"second"}));
}

TEST(Journal, IsEmptyWhenItsFileIsMissing)
{
    test::TemporaryFolder const folder;
    EXPECT_TRUE(sim::ReadJournal(folder / L"events.log").empty());
}
