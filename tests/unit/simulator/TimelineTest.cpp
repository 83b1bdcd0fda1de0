#include "simulator/scenario/Timeline.h"

#include <gtest/gtest.h>

namespace
{

class TimelineTest : public testing::Test
{
  protected:
    sim::Timeline Make(sim::Colour colour)
    {
        return sim::Timeline([this](std::wstring_view line) { m_lines.emplace_back(line); }, colour);
    }

    std::vector<std::wstring> m_lines;
};

} // namespace

TEST_F(TimelineTest, ShowWhatCameInTheOrderOfItsTime)
{
    auto timeline = Make(sim::Colour::No);
    auto const start = sim::Now();
    timeline.Add({start + 20, sim::Timeline::Source::Log, L"second"});
    timeline.Add({start + 10, sim::Timeline::Source::Event, L"first"});
    timeline.Add({start + 20, sim::Timeline::Source::Step, L"third"});
    timeline.ShowAll();
    ASSERT_EQ(m_lines.size(), 3u);
    EXPECT_NE(m_lines[0].find(L"platform  first"), std::wstring::npos);
    EXPECT_NE(m_lines[1].find(L"log       second"), std::wstring::npos);
    EXPECT_NE(m_lines[2].find(L"step      third"), std::wstring::npos);
    timeline.ShowAll();
    EXPECT_EQ(m_lines.size(), 3u); // nothing is held back, nothing is shown twice
}

TEST_F(TimelineTest, HoldBackWhatSomethingEarlierMayStillPass)
{
    auto timeline = Make(sim::Colour::No);
    timeline.Add({sim::Now() - 10 * sim::Timeline::holdMilliseconds, sim::Timeline::Source::Log, L"old"});
    timeline.Add({sim::Now() + 60'000, sim::Timeline::Source::Log, L"new"});
    timeline.ShowSettled();
    ASSERT_EQ(m_lines.size(), 1u);
    EXPECT_NE(m_lines[0].find(L"old"), std::wstring::npos);
    timeline.ShowAll();
    ASSERT_EQ(m_lines.size(), 2u);
    EXPECT_NE(m_lines[1].find(L"new"), std::wstring::npos);
}

TEST_F(TimelineTest, AreColouredOnlyWhenAsked)
{
    auto timeline = Make(sim::Colour::Yes);
    timeline.Add({sim::Now(), sim::Timeline::Source::Step, L"a step"});
    timeline.ShowAll();
    ASSERT_EQ(m_lines.size(), 1u);
    EXPECT_EQ(m_lines[0].front(), L'\x1b');
}
