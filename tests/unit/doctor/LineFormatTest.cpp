#include "doctor/show/LineFormat.h"

#include <gtest/gtest.h>

using namespace doctor;
using namespace std::chrono;

namespace
{

Entry Line(std::string_view message, zant::LogLevel level = zant::LogLevel::Info)
{
    return {{.text = "whole", .number = 3},
            LogLine{.time = local_days(2024y / January / 5) + 9h + 30min + 12s + 45ms,
                    .level = level,
                    .product = "ZEB",
                    .component = "ZEC",
                    .category = "ZEBMain",
                    .detail = "detail",
                    .origin = "origin",
                    .thread = 4660,
                    .message = message}};
}

constexpr wchar_t file[] = L"C:\\logs\\KZEB.log";

std::string Formatted(Entry const& entry, LineFormat const& format = {})
{
    return FormatEntry(entry, file, format);
}

constexpr std::string_view uri = "is https://host/?token=AwYAAABcdefgh";

} // namespace

TEST(LineFormat, ShowsTimeLevelThreadCategoryAndMessage)
{
    EXPECT_EQ(Formatted(Line("Inside OnLaunched")), "2024-01-05 09:30:12.045 INFO  4660  ZEBMain    Inside OnLaunched");
}

TEST(LineFormat, ShowsTextInAnotherFormatAsItStands)
{
    EXPECT_EQ(Formatted({{.text = "no line of the app"}, {}}), "no line of the app");
}

TEST(LineFormat, ColoursByLevelForATerminal)
{
    LineFormat const coloured{.form = Form::Coloured};
    auto const plain = Formatted(Line("text"));
    EXPECT_EQ(Formatted(Line("text"), coloured), plain);
    using enum zant::LogLevel;
    auto const colourOf = [&](zant::LogLevel level) { return Formatted(Line("text", level), coloured).substr(0, 5); };
    EXPECT_EQ(colourOf(Error), "\x1b[31m");
    EXPECT_EQ(colourOf(Fatal), "\x1b[31m");
    EXPECT_EQ(colourOf(Warn), "\x1b[33m");
    EXPECT_EQ(Formatted(Line("text", Debug), coloured).substr(0, 4), "\x1b[2m");
    EXPECT_TRUE(Formatted(Line("text", Warn), coloured).ends_with("text\x1b[0m"));
    EXPECT_EQ(Formatted({{.text = "other"}, {}}, coloured), "\x1b[2mother\x1b[0m");
}

TEST(LineFormat, ShortensChannelUris)
{
    EXPECT_TRUE(Formatted(Line(uri)).ends_with("is https://host/?token=AwYAAA\u2026"));
    EXPECT_EQ(Formatted({{.text = uri}, {}}), "is https://host/?token=AwYAAA\u2026");
    EXPECT_EQ(Formatted(Line(uri), {.form = Form::Json}).find("Bcdefgh"), std::string::npos);
}

TEST(LineFormat, ShowsWholeChannelUrisOnRequest)
{
    EXPECT_TRUE(Formatted(Line(uri), {.hasFullUris = true}).ends_with(uri));
    EXPECT_NE(Formatted(Line(uri), {.form = Form::Json, .hasFullUris = true}).find("Bcdefgh"), std::string::npos);
}

TEST(LineFormat, ShowsNoControlCharacters)
{
    EXPECT_EQ(Formatted({{.text = "a\x1b[2Jb\x7F\tc\r"}, {}}), "a\uFFFD[2Jb\uFFFD\tc\uFFFD");
    EXPECT_EQ(Formatted({{.text = "\u0080\u009B2J\u00A0\u00E9\xC2"}, {}}), "\uFFFD\uFFFD2J\u00A0\u00E9\xC2");
    EXPECT_EQ(Formatted(Line("\x1b[0m")).find('\x1b'), std::string::npos);
}

TEST(LineFormat, GivesAnObjectOfJsonForEachLine)
{
    EXPECT_EQ(Formatted(Line("say \"so\"\x1b"), {.form = Form::Json}),
              R"({"time":"2024-01-05 09:30:12.045","level":"INFO","thread":4660,"product":"ZEB","component":"ZEC",)"
              R"("category":"ZEBMain","detail":"detail","origin":"origin","message":"say \"so\"\u001b",)"
              R"("file":"C:\\logs\\KZEB.log","line":3})");
    EXPECT_EQ(Formatted({{.text = "other", .number = 1, .isDamaged = true}, {}}, {.form = Form::Json}),
              R"({"message":"other","file":"C:\\logs\\KZEB.log","line":1,"damaged":true})");
}
