#include "simulator/protocol/Event.h"

#include <gtest/gtest.h>

namespace
{

sim::Moment At(int hour, int minute, int second, int milliseconds)
{
    return sim::MomentOf(2024, 1, 5, hour, minute, second, milliseconds).value();
}

} // namespace

TEST(EventTest, IsALineWithItsTime)
{
    sim::Event const event{At(9, 30, 12, 45), L"desktop-started", {L"pid=12", L"command=\"C:\\a b.exe\" /x"}};
    EXPECT_EQ(event.Line(), L"2024-01-05 09:30:12.045 desktop-started pid=12 command='\"C:\\a b.exe\" /x'");
}

TEST(EventTest, ComesBackFromItsLine)
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

TEST(EventTest, IsNotReadFromAnotherLine)
{
    for (auto const* line : {L"", L"2024-01-05 09:30:12.045", L"2024-13-05 09:30:12.045 kind", L"so many words here",
                             L"2024-01-05 09:30:12.045 kind 'open", L"2024-01-05 9:30 kind"})
    {
        EXPECT_FALSE(sim::ParseEvent(line)) << line;
    }
}
