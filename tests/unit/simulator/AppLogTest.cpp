#include "simulator/log/AppLog.h"

#include "doctor/show/Follow.h"
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
    test::TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"KZEB.log";
};

} // namespace

TEST_F(AppLogTest, IsMadeLongerWithoutALine)
{
    auto const before = "\xFF\xFE" + test::Utf16(L"some line, long enough to tell its encoding\r\n");
    test::WriteBytes(m_path, before);
    sim::GrowLogTo(m_path, 1'000'000);
    EXPECT_EQ(test::ReadBytes(m_path), before + std::string(1'000'000 - before.size(), '\0'));
    std::vector<std::string> lines;
    auto growths = 0;
    doctor::Follower(m_path).TakeNew([&](doctor::Entry const& entry) {
        auto const isGrowth = sim::IsGrowth(entry.raw.text);
        growths += isGrowth;
        lines.insert(lines.end(), isGrowth ? 0 : 1, std::string(entry.raw.text));
        return true;
    });
    EXPECT_EQ(lines, std::vector<std::string>{"some line, long enough to tell its encoding"});
    EXPECT_GT(growths, 0);
}

TEST_F(AppLogTest, CannotBeMadeLongerWhereItIsMissing)
{
    EXPECT_THROW(sim::GrowLogTo(m_path, 1), sim::Error);
}

TEST_F(AppLogTest, HasLinesThatAreNoGrowth)
{
    EXPECT_TRUE(sim::IsGrowth("\0\0"s));
    EXPECT_FALSE(sim::IsGrowth("\0x"s));
    EXPECT_FALSE(sim::IsGrowth("x\0"s));
    EXPECT_FALSE(sim::IsGrowth(""));
}
