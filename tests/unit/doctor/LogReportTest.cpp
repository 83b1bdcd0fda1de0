#include "doctor/verdict/LogReport.h"

#include "doctor/timeline/LogTimeline.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"

#include <gtest/gtest.h>
#include <psapi.h>

namespace
{

constexpr std::size_t files = 11;
constexpr std::size_t fileBytes = std::size_t{15} * 1024 * 1024;

// A live log and ten copies, each at its limit of size.
class LogReport : public testing::Test
{
  protected:
    LogReport()
    {
        std::wstring day;
        for (auto const* message :
             {L"Inside OnBackgroundActivated", L"Deferal to complete background task",
              L"Notification bkg thread invocation", L"Going to launch full trust app for new notification invocation ",
              L"Launch Done !! ", L"Service deferral complete"})
        {
            day += test::LogText(L"01/05/24 09:30:12:045", message) + L"\r\n";
        }
        auto const dayBytes = test::Utf16(day);
        auto content = test::Utf16(test::mark);
        for (; content.size() < fileBytes; ++m_pushes)
        {
            content += dayBytes;
        }
        for (std::size_t i = 0; i < files; ++i)
        {
            test::WriteBytes(m_folder / (L"KZEB " + std::to_wstring(i) + L".log"), content);
        }
    }

    static std::size_t PeakMemory()
    {
        PROCESS_MEMORY_COUNTERS counters{};
        counters.cb = sizeof counters;
        return K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)
                   ? counters.PeakWorkingSetSize
                   : throw std::runtime_error("the memory cannot be measured");
    }

    test::TemporaryFolder m_folder;
    std::uint64_t m_pushes = 0; // in each file
};

constexpr std::size_t mostMemory = 100'000'000;

} // namespace

TEST_F(LogReport, OfALongLogAndItsCopiesTakesLittleMemory)
{
    auto const report = doctor::ReportOfLogs({m_folder / L""}, std::nullopt);
    EXPECT_EQ(report.files.size(), files);
    auto const& launched = report.stages[static_cast<std::size_t>(doctor::Stage::ComponentLaunched)];
    EXPECT_EQ(launched.worked, files * m_pushes);
    EXPECT_EQ(report.summary, "Nothing failed.");
    EXPECT_LT(PeakMemory(), mostMemory);
}

TEST_F(LogReport, WithATimelineTakesLittleMemory)
{
    auto const made = doctor::TimelineOfLogs({m_folder / L""}, std::nullopt, "", false);
    EXPECT_EQ(made.report.files.size(), files);
    EXPECT_LT(PeakMemory(), mostMemory);
}
