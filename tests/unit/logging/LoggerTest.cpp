#include "logging/Logger.h"

#include "logging/LogTargetRegistry.h"
#include "tests/support/RecordingTarget.h"

#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

// A logger whose group holds one recording target. The process-wide registry keeps targets for good, so there is one
// for all tests.
class LoggerTest : public testing::Test
{
  protected:
    LoggerTest()
    {
        GetLogTargetRegistry().Register(target);
        target.calls.clear();
        logger.product = L"ZEB";
        logger.component = L"component";
        logger.category = L"category";
    }

    // The one call that reached the target.
    RecordedCall const& Recorded()
    {
        static RecordedCall const nothing;
        EXPECT_EQ(target.calls.size(), 1u);
        return target.calls.empty() ? nothing : target.calls.back();
    }

    void ExpectRecorded(RecordedCall const& expected) { EXPECT_EQ(Recorded(), expected); }

    static inline RecordingTarget& target = *new RecordingTarget(L"ZEB");
    Logger logger;
};

RecordedCall Wide(LogLevel level, wchar_t const* category, wchar_t const* detail, wchar_t const* origin,
                  wchar_t const* message)
{
    return {.wide = true,
            .level = level,
            .fields = {L"", L"ZEB", L"component", category},
            .detail = detail,
            .origin = origin,
            .message = message};
}

RecordedCall Narrow(LogLevel level, wchar_t const* category, wchar_t const* detail, wchar_t const* origin,
                    wchar_t const* message)
{
    auto call = Wide(level, category, detail, origin, message);
    call.wide = false;
    return call;
}

template <typename Char>
std::uint64_t LogList(Logger& logger, LogLevel level, Char const* detail, Char const* origin, Char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result = logger.LogV(level, detail, origin, format, arguments);
    va_end(arguments);
    return result;
}

} // namespace

TEST_F(LoggerTest, StartsWithEmptyFields)
{
    Logger const fresh;
    EXPECT_EQ(fresh.reserved, L"");
    EXPECT_EQ(fresh.product, L"");
    EXPECT_EQ(fresh.component, L"");
    EXPECT_EQ(fresh.category, L"");
}

TEST_F(LoggerTest, TraceLogsAt10)
{
    logger.Trace(L"%d %ls", 1, L"wide");
    ExpectRecorded(Wide(LogLevel{10}, L"category", L"", L"", L"1 wide"));
}

TEST_F(LoggerTest, NarrowTraceLogsAt10)
{
    logger.Trace("%d %s", 1, "narrow");
    ExpectRecorded(Narrow(LogLevel{10}, L"category", L"", L"", L"1 narrow"));
}

TEST_F(LoggerTest, DebugLogsAt20)
{
    logger.Debug(L"%d", 2);
    ExpectRecorded(Wide(LogLevel{20}, L"category", L"", L"", L"2"));
}

TEST_F(LoggerTest, NarrowDebugLogsAt20)
{
    logger.Debug("%d", 2);
    ExpectRecorded(Narrow(LogLevel{20}, L"category", L"", L"", L"2"));
}

TEST_F(LoggerTest, InfoLogsAt30)
{
    logger.Info(L"%d", 3);
    ExpectRecorded(Wide(LogLevel{30}, L"category", L"", L"", L"3"));
}

TEST_F(LoggerTest, NarrowInfoLogsAt30)
{
    logger.Info("%d", 3);
    ExpectRecorded(Narrow(LogLevel{30}, L"category", L"", L"", L"3"));
}

TEST_F(LoggerTest, WarnLogsAt40WithItsDetail)
{
    logger.Warn(L"why", L"%d", 4);
    ExpectRecorded(Wide(LogLevel{40}, L"category", L"why", L"", L"4"));
}

TEST_F(LoggerTest, NarrowWarnLogsAt40WithItsDetail)
{
    logger.Warn("why", "%d", 4);
    ExpectRecorded(Narrow(LogLevel{40}, L"category", L"why", L"", L"4"));
}

TEST_F(LoggerTest, ErrorLogsAt50WithItsDetail)
{
    logger.Error(L"why", L"%d", 5);
    ExpectRecorded(Wide(LogLevel{50}, L"category", L"why", L"", L"5"));
}

TEST_F(LoggerTest, NarrowErrorLogsAt50WithItsDetail)
{
    logger.Error("why", "%d", 5);
    ExpectRecorded(Narrow(LogLevel{50}, L"category", L"why", L"", L"5"));
}

TEST_F(LoggerTest, FatalLogsAt60WithItsDetail)
{
    logger.Fatal(L"why", L"%d", 6);
    ExpectRecorded(Wide(LogLevel{60}, L"category", L"why", L"", L"6"));
}

TEST_F(LoggerTest, NarrowFatalLogsAt60WithItsDetail)
{
    logger.Fatal("why", "%d", 6);
    ExpectRecorded(Narrow(LogLevel{60}, L"category", L"why", L"", L"6"));
}

TEST_F(LoggerTest, LogTakesAnyLevel)
{
    logger.Log(LogLevel{35}, L"why", L"where", L"%d", 7);
    ExpectRecorded(Wide(LogLevel{35}, L"category", L"why", L"where", L"7"));
}

TEST_F(LoggerTest, NarrowLogTakesAnyLevel)
{
    logger.Log(LogLevel{35}, "why", "where", "%d", 7);
    ExpectRecorded(Narrow(LogLevel{35}, L"category", L"why", L"where", L"7"));
}

TEST_F(LoggerTest, NullDetailAndOriginStandForEmptyOnes)
{
    constexpr wchar_t const* nothing = nullptr;
    logger.Warn(nothing, L"w");
    logger.Log(LogLevel::Info, nothing, nothing, L"l");
    ASSERT_EQ(target.calls.size(), 2u);
    EXPECT_EQ(target.calls[0], Wide(LogLevel::Warn, L"category", L"", L"", L"w"));
    EXPECT_EQ(target.calls[1], Wide(LogLevel::Info, L"category", L"", L"", L"l"));
}

TEST_F(LoggerTest, NarrowNullDetailAndOriginStandForEmptyOnes)
{
    constexpr char const* nothing = nullptr;
    logger.Fatal(nothing, "f");
    logger.Log(LogLevel::Info, nothing, nothing, "l");
    ASSERT_EQ(target.calls.size(), 2u);
    EXPECT_EQ(target.calls[0], Narrow(LogLevel::Fatal, L"category", L"", L"", L"f"));
    EXPECT_EQ(target.calls[1], Narrow(LogLevel::Info, L"category", L"", L"", L"l"));
}

TEST_F(LoggerTest, LogVPassesOnWhatItIsGiven)
{
    LogList<wchar_t>(logger, LogLevel::Error, nullptr, nullptr, L"%ls", L"text");
    ExpectRecorded({.wide = true,
                    .level = LogLevel::Error,
                    .fields = {L"", L"ZEB", L"component", L"category"},
                    .detail = std::nullopt,
                    .origin = std::nullopt,
                    .message = L"text"});
}

TEST_F(LoggerTest, NarrowLogVPassesOnWhatItIsGiven)
{
    LogList(logger, LogLevel{35}, "why \xC3\xA4", "where", "%s", "text");
    auto expected = Narrow(LogLevel{35}, L"category", L"why \u00E4", L"where", L"text");
    ExpectRecorded(expected);
    target.calls.clear();
    LogList<char>(logger, LogLevel::Error, nullptr, nullptr, "%s", "text");
    expected = Narrow(LogLevel::Error, L"category", L"", L"", L"text");
    expected.detail = std::nullopt;
    expected.origin = std::nullopt;
    ExpectRecorded(expected);
}

TEST_F(LoggerTest, LogVWithoutAListPassesOnNone)
{
    logger.LogV(LogLevel::Info, L"", L"", L"100 %", nullptr);
    EXPECT_FALSE(Recorded().hadArguments);
    EXPECT_EQ(Recorded().message, L"100 %");
}

TEST_F(LoggerTest, NarrowLogVWithoutAListPassesOnNone)
{
    logger.LogV(LogLevel::Info, "", "", "100 %", nullptr);
    EXPECT_FALSE(Recorded().hadArguments);
    EXPECT_EQ(Recorded().message, L"100 %");
}

TEST_F(LoggerTest, TheScopedOperationsReplaceTheCategory)
{
    logger.TraceIn(L"scope", L"%d", 1);
    logger.DebugIn(L"scope", L"%d", 2);
    logger.InfoIn(L"scope", L"%d", 3);
    logger.WarnIn(L"scope", L"why", L"%d", 4);
    logger.ErrorIn(L"scope", L"why", L"%d", 5);
    logger.FatalIn(L"scope", L"why", L"%d", 6);
    EXPECT_EQ(target.calls, (std::vector{
                                Wide(LogLevel{10}, L"scope", L"", L"", L"1"),
                                Wide(LogLevel{20}, L"scope", L"", L"", L"2"),
                                Wide(LogLevel{30}, L"scope", L"", L"", L"3"),
                                Wide(LogLevel{40}, L"scope", L"why", L"", L"4"),
                                Wide(LogLevel{50}, L"scope", L"why", L"", L"5"),
                                Wide(LogLevel{60}, L"scope", L"why", L"", L"6"),
                            }));
    EXPECT_EQ(logger.category, L"category");
}

TEST_F(LoggerTest, TheNarrowScopedOperationsReplaceTheCategory)
{
    logger.TraceIn("sc\xC3\xB6pe", "%d", 1);
    logger.DebugIn("sc\xC3\xB6pe", "%d", 2);
    logger.InfoIn("sc\xC3\xB6pe", "%d", 3);
    logger.WarnIn("sc\xC3\xB6pe", "why", "%d", 4);
    logger.ErrorIn("sc\xC3\xB6pe", "why", "%d", 5);
    logger.FatalIn("sc\xC3\xB6pe", "why", "%d", 6);
    EXPECT_EQ(target.calls, (std::vector{
                                Narrow(LogLevel{10}, L"sc\u00F6pe", L"", L"", L"1"),
                                Narrow(LogLevel{20}, L"sc\u00F6pe", L"", L"", L"2"),
                                Narrow(LogLevel{30}, L"sc\u00F6pe", L"", L"", L"3"),
                                Narrow(LogLevel{40}, L"sc\u00F6pe", L"why", L"", L"4"),
                                Narrow(LogLevel{50}, L"sc\u00F6pe", L"why", L"", L"5"),
                                Narrow(LogLevel{60}, L"sc\u00F6pe", L"why", L"", L"6"),
                            }));
    EXPECT_EQ(logger.category, L"category");
}

TEST_F(LoggerTest, ANarrowScopeThatIsNotUtf8CountsAsEmpty)
{
    logger.InfoIn("\xC3(", "message");
    ExpectRecorded(Narrow(LogLevel::Info, L"", L"", L"", L"message"));
}

TEST_F(LoggerTest, ANullFormatLogsNothing)
{
    constexpr wchar_t const* nothing = nullptr;
    EXPECT_EQ(logger.Trace(nothing), 0u);
    EXPECT_EQ(logger.Debug(nothing), 0u);
    EXPECT_EQ(logger.Info(nothing), 0u);
    EXPECT_EQ(logger.Warn(L"", nothing), 0u);
    EXPECT_EQ(logger.Error(L"", nothing), 0u);
    EXPECT_EQ(logger.Fatal(L"", nothing), 0u);
    EXPECT_EQ(logger.Log(LogLevel::Fatal, L"", L"", nothing), 0u);
    EXPECT_EQ(logger.LogV(LogLevel::Fatal, L"", L"", nothing, nullptr), 0u);
    EXPECT_TRUE(target.calls.empty());
}

TEST_F(LoggerTest, ANarrowNullFormatLogsNothing)
{
    constexpr char const* nothing = nullptr;
    EXPECT_EQ(logger.Trace(nothing), 0u);
    EXPECT_EQ(logger.Debug(nothing), 0u);
    EXPECT_EQ(logger.Info(nothing), 0u);
    EXPECT_EQ(logger.Warn("", nothing), 0u);
    EXPECT_EQ(logger.Error("", nothing), 0u);
    EXPECT_EQ(logger.Fatal("", nothing), 0u);
    EXPECT_EQ(logger.Log(LogLevel::Fatal, "", "", nothing), 0u);
    EXPECT_EQ(logger.LogV(LogLevel::Fatal, "", "", nothing, nullptr), 0u);
    EXPECT_TRUE(target.calls.empty());
}

TEST_F(LoggerTest, ANullScopeDetailOrFormatOfAScopedOperationLogsNothing)
{
    constexpr wchar_t const* nothing = nullptr;
    EXPECT_EQ(logger.TraceIn(nothing, L"m"), 0u);
    EXPECT_EQ(logger.TraceIn(L"s", nothing), 0u);
    EXPECT_EQ(logger.DebugIn(nothing, L"m"), 0u);
    EXPECT_EQ(logger.DebugIn(L"s", nothing), 0u);
    EXPECT_EQ(logger.InfoIn(nothing, L"m"), 0u);
    EXPECT_EQ(logger.InfoIn(L"s", nothing), 0u);
    EXPECT_EQ(logger.WarnIn(nothing, L"d", L"m"), 0u);
    EXPECT_EQ(logger.WarnIn(L"s", nothing, L"m"), 0u);
    EXPECT_EQ(logger.WarnIn(L"s", L"d", nothing), 0u);
    EXPECT_EQ(logger.ErrorIn(nothing, L"d", L"m"), 0u);
    EXPECT_EQ(logger.ErrorIn(L"s", nothing, L"m"), 0u);
    EXPECT_EQ(logger.ErrorIn(L"s", L"d", nothing), 0u);
    EXPECT_EQ(logger.FatalIn(nothing, L"d", L"m"), 0u);
    EXPECT_EQ(logger.FatalIn(L"s", nothing, L"m"), 0u);
    EXPECT_EQ(logger.FatalIn(L"s", L"d", nothing), 0u);
    EXPECT_TRUE(target.calls.empty());
}

TEST_F(LoggerTest, ANarrowNullScopeDetailOrFormatOfAScopedOperationLogsNothing)
{
    constexpr char const* nothing = nullptr;
    EXPECT_EQ(logger.TraceIn(nothing, "m"), 0u);
    EXPECT_EQ(logger.TraceIn("s", nothing), 0u);
    EXPECT_EQ(logger.DebugIn(nothing, "m"), 0u);
    EXPECT_EQ(logger.DebugIn("s", nothing), 0u);
    EXPECT_EQ(logger.InfoIn(nothing, "m"), 0u);
    EXPECT_EQ(logger.InfoIn("s", nothing), 0u);
    EXPECT_EQ(logger.WarnIn(nothing, "d", "m"), 0u);
    EXPECT_EQ(logger.WarnIn("s", nothing, "m"), 0u);
    EXPECT_EQ(logger.WarnIn("s", "d", nothing), 0u);
    EXPECT_EQ(logger.ErrorIn(nothing, "d", "m"), 0u);
    EXPECT_EQ(logger.ErrorIn("s", nothing, "m"), 0u);
    EXPECT_EQ(logger.ErrorIn("s", "d", nothing), 0u);
    EXPECT_EQ(logger.FatalIn(nothing, "d", "m"), 0u);
    EXPECT_EQ(logger.FatalIn("s", nothing, "m"), 0u);
    EXPECT_EQ(logger.FatalIn("s", "d", nothing), 0u);
    EXPECT_TRUE(target.calls.empty());
}

namespace
{

// LogV passes nothing on.
class LoggerWithOwnLogV : public Logger
{
  public:
    std::uint64_t LogV(LogLevel level, char const* detail, char const* origin, char const* format,
                       va_list arguments) override
    {
        calls.push_back(std::to_string(static_cast<int>(level)) + " narrow " + detail + "," + origin + "," + format);
        EXPECT_NE(arguments, nullptr);
        return 17;
    }

    std::uint64_t LogV(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                       va_list arguments) override
    {
        auto const shown = [](std::wstring_view text) { return std::string(text.begin(), text.end()); };
        calls.push_back(std::to_string(static_cast<int>(level)) + " wide " + shown(detail) + "," + shown(origin) + "," +
                        shown(format));
        EXPECT_NE(arguments, nullptr);
        return 18;
    }

    std::vector<std::string> calls;
};

} // namespace

TEST_F(LoggerTest, TheUnscopedOperationsForwardToLogV)
{
    LoggerWithOwnLogV own;
    EXPECT_EQ(own.Trace("%d", 1), 17u);
    EXPECT_EQ(own.Trace(L"%d", 1), 18u);
    EXPECT_EQ(own.Debug("%d", 1), 17u);
    EXPECT_EQ(own.Debug(L"%d", 1), 18u);
    EXPECT_EQ(own.Info("%d", 1), 17u);
    EXPECT_EQ(own.Info(L"%d", 1), 18u);
    EXPECT_EQ(own.Warn("d", "%d", 1), 17u);
    EXPECT_EQ(own.Warn(L"d", L"%d", 1), 18u);
    EXPECT_EQ(own.Error("d", "%d", 1), 17u);
    EXPECT_EQ(own.Error(L"d", L"%d", 1), 18u);
    EXPECT_EQ(own.Fatal("d", "%d", 1), 17u);
    EXPECT_EQ(own.Fatal(L"d", L"%d", 1), 18u);
    EXPECT_EQ(own.Log(LogLevel{35}, "d", "o", "%d", 1), 17u);
    EXPECT_EQ(own.Log(LogLevel{35}, L"d", L"o", L"%d", 1), 18u);
    EXPECT_EQ(own.calls, (std::vector<std::string>{"10 narrow ,,%d", "10 wide ,,%d", "20 narrow ,,%d", "20 wide ,,%d",
                                                   "30 narrow ,,%d", "30 wide ,,%d", "40 narrow d,,%d", "40 wide d,,%d",
                                                   "50 narrow d,,%d", "50 wide d,,%d", "60 narrow d,,%d",
                                                   "60 wide d,,%d", "35 narrow d,o,%d", "35 wide d,o,%d"}));
    EXPECT_TRUE(target.calls.empty());
}

// The calls reach the targets themselves, with the scope in place of the category.
TEST_F(LoggerTest, TheScopedOperationsDoNotForwardToLogV)
{
    LoggerWithOwnLogV own;
    own.TraceIn("s", "m");
    own.TraceIn(L"s", L"m");
    own.DebugIn("s", "m");
    own.DebugIn(L"s", L"m");
    own.InfoIn("s", "m");
    own.InfoIn(L"s", L"m");
    own.WarnIn("s", "d", "m");
    own.WarnIn(L"s", L"d", L"m");
    own.ErrorIn("s", "d", "m");
    own.ErrorIn(L"s", L"d", L"m");
    own.FatalIn("s", "d", "m");
    own.FatalIn(L"s", L"d", L"m");
    EXPECT_EQ(own.calls, std::vector<std::string>());
    EXPECT_EQ(target.calls.size(), 12u);
}

TEST_F(LoggerTest, EveryCallAsksForNowAndForTheLock)
{
    logger.Info(L"m");
    EXPECT_EQ(Recorded().time, 0u);
    EXPECT_TRUE(Recorded().lockFlag);
}
