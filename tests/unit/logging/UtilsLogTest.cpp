#include "utils/UtilsLog.h"
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"
#include "tests/support/RecordingHook.h"
#include "tests/support/RecordingTarget.h"

#include <gtest/gtest.h>

namespace
{

using Lines = std::vector<test::RecordingHook::Line>;

// The utilities' logger, whose group holds one recording target; the process-wide registry keeps it for good.
class UtilsLog : public testing::Test
{
  protected:
    UtilsLog()
    {
        zant::GetLogTargetRegistry().Register(target);
        target.calls.clear();
        logger.product = L"ZEB";
    }

    ~UtilsLog() override { zant::g_utilsLogger = nullptr; }

    static inline test::RecordingTarget& target = *new test::RecordingTarget(L"ZEB");
    zant::Logger logger;
};

TEST_F(UtilsLog, WritesNothingWithoutAnOutlet)
{
    EXPECT_EQ(zant::g_utilsLogHook, nullptr);
    EXPECT_EQ(zant::g_utilsLogger, nullptr);
    zant::LogFromUtils(zant::LogLevel::Error, L"category", L"message");
    EXPECT_TRUE(target.calls.empty());
}

TEST_F(UtilsLog, GoesThroughTheHookAlsoWhenThereIsALogger)
{
    test::RecordingHook const hook;
    zant::g_utilsLogger = &logger;
    zant::LogFromUtils(zant::LogLevel::Warn, L"category", L"'%s' of %d", L"message", 5);
    EXPECT_EQ(hook.Lines(), (Lines{{40, L"ZANTUtils", L"category", L"", L"", L"'message' of 5"}}));
    EXPECT_TRUE(target.calls.empty());
}

TEST_F(UtilsLog, GoesThroughTheLoggerWithTheCategoryAsOriginWithoutAHook)
{
    zant::g_utilsLogger = &logger;
    zant::LogFromUtils(zant::LogLevel::Error, L"category", L"'%s' of %d", L"message", 5);
    ASSERT_EQ(target.calls.size(), 1u);
    EXPECT_EQ(target.calls[0].level, zant::LogLevel::Error);
    EXPECT_EQ(target.calls[0].detail, L"");
    EXPECT_EQ(target.calls[0].origin, L"category");
    EXPECT_EQ(target.calls[0].message, L"'message' of 5");
}

} // namespace
