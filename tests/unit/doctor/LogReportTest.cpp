#include "doctor/verdict/LogReport.h"

#include "doctor/timeline/LogTimeline.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LongLog.h"

#include <gtest/gtest.h>

namespace
{

class LogReport : public testing::Test
{
  protected:
    test::TemporaryFolder m_folder;
    std::uint64_t const m_pushes = test::WriteLongLog(m_folder.Path()); // in each file
};

} // namespace

TEST_F(LogReport, OfALongLogAndItsCopiesTakesLittleMemory)
{
    auto const report = doctor::ReportOfLogs({m_folder / L""}, std::nullopt);
    EXPECT_EQ(report.files.size(), test::longLogFiles);
    auto const& launched = report.stages[static_cast<std::size_t>(doctor::Stage::ComponentLaunched)];
    EXPECT_EQ(launched.worked, test::longLogFiles * m_pushes);
    EXPECT_EQ(report.summary, "Nothing failed.");
    EXPECT_LT(test::PeakMemory(), test::mostMemory);
}

TEST_F(LogReport, WithATimelineTakesLittleMemory)
{
    auto const made = doctor::TimelineOfLogs({m_folder / L""}, std::nullopt, "", false);
    EXPECT_EQ(made.report.files.size(), test::longLogFiles);
    EXPECT_LT(test::PeakMemory(), test::mostMemory);
}
