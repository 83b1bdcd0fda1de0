#include "utils/LogLevel.h"

#include <gtest/gtest.h>
#include <string>

using namespace zant;

TEST(LogLevel, EveryLevelHasItsNumberAndName)
{
    EXPECT_EQ(LevelName(LogLevel{10}), L"TRACE");
    EXPECT_EQ(LevelName(LogLevel{20}), L"DEBUG");
    EXPECT_EQ(LevelName(LogLevel{30}), L"INFO");
    EXPECT_EQ(LevelName(LogLevel{40}), L"WARN");
    EXPECT_EQ(LevelName(LogLevel{50}), L"ERROR");
    EXPECT_EQ(LevelName(LogLevel{60}), L"FATAL");
    EXPECT_EQ(LevelName(LogLevel{70}), L"NONE");
}

TEST(LogLevel, AnyOtherNumberIsNamedAll)
{
    for (auto const number : {INT32_MIN, -10, 0, 9, 11, 35, 71, 100, INT32_MAX})
    {
        EXPECT_EQ(LevelName(LogLevel{number}), L"ALL") << number;
    }
}

TEST(LogLevel, IsComparedAsASigned32BitNumber)
{
    static_assert(std::is_same_v<std::underlying_type_t<LogLevel>, std::int32_t>);
    EXPECT_LT(LogLevel{-1}, LogLevel::Trace);
    EXPECT_LT(LogLevel::Fatal, LogLevel::None);
}
