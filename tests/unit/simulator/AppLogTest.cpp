#include "simulator/log/AppLog.h"

#include "simulator/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

using namespace std::string_literals;

class AppLogTest : public testing::Test
{
  protected:
    std::vector<std::string> NewLines()
    {
        std::vector<std::string> lines;
        sim::TakeNewLines(m_log, [&](doctor::Entry const& entry) { lines.emplace_back(entry.raw.text); });
        return lines;
    }

    test::TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"KZEB.log";
    doctor::Follower m_log{m_path};
};

} // namespace

TEST_F(AppLogTest, IsMadeLongerWithoutALine)
{
    auto const before = "\xFF\xFE" + test::Utf16(L"some line, long enough to tell its encoding\r\n");
    test::WriteBytes(m_path, before);
    sim::GrowLogTo(m_path, 1'000'000);
    EXPECT_EQ(test::ReadBytes(m_path), before + std::string(1'000'000 - before.size(), '\0'));
    EXPECT_EQ(NewLines(), std::vector<std::string>{"some line, long enough to tell its encoding"});
    EXPECT_EQ(NewLines(), std::vector<std::string>{});
}

TEST_F(AppLogTest, CannotBeMadeLongerWhereItIsMissing)
{
    EXPECT_THROW(sim::GrowLogTo(m_path, 1), sim::Error);
}

TEST_F(AppLogTest, GivesLinesThatAreNotOfZerosOnly)
{
    test::WriteBytes(m_path, "\0x\nx\0\n\n\0\0\nlong enough to tell the encoding, which takes 64 bytes of it\n"s);
    EXPECT_EQ(NewLines(), (std::vector<std::string>{"\0x"s, "x\0"s, "",
                                                    "long enough to tell the encoding, which takes 64 bytes of it"}));
}

TEST_F(AppLogTest, ThatCannotBeReadIsAnError)
{
    doctor::Follower folder(m_folder.Path());
    EXPECT_THROW(sim::TakeNewLines(folder, [](auto&&) {}), sim::Error);
}

TEST_F(AppLogTest, HasTimesOfTheJournal)
{
    using namespace std::chrono;
    EXPECT_EQ(sim::MomentOf(local_days(2024y / January / 5) + 9h + 30min + 12s + 45ms),
              sim::MomentOf(2024, 1, 5, 9, 30, 12, 45));
}
