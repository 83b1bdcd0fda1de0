#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/scenario/Player.h"

#include <gtest/gtest.h>

namespace
{

// The page about scenarios, as it is read: in its tables a bar is escaped.
std::wstring Page()
{
    auto page = sim::ReadText(SIMULATOR_PAGE);
    sim::ReplaceAll(page, L"\\|", L"|");
    return page;
}

void ExpectOn(std::wstring const& page, std::wstring const& text)
{
    EXPECT_NE(page.find(L"`" + text + L"`"), std::wstring::npos) << sim::ToUtf8(text);
}

} // namespace

TEST(ScenarioLanguageTest, IsOnItsPage)
{
    auto const page = Page();
    for (auto const& step : sim::Player::Steps())
    {
        ExpectOn(page, step.Usage());
    }
    for (auto const& check : sim::Expectations::All())
    {
        ExpectOn(page, L"expect " + check.Usage());
    }
    for (auto const name : sim::Player::NameList())
    {
        ExpectOn(page, std::wstring(name));
    }
}

TEST(ScenarioLanguageTest, IsInTheHelp)
{
    auto const help = sim::Player::Help();
    for (auto const& step : sim::Player::Steps())
    {
        EXPECT_NE(help.find(L"\n  " + step.Usage() + L" "), std::wstring::npos) << sim::ToUtf8(step.Usage());
        EXPECT_FALSE(step.summary.empty());
    }
    for (auto const& check : sim::Expectations::All())
    {
        EXPECT_NE(help.find(L"\n  expect " + check.Usage() + L" "), std::wstring::npos) << sim::ToUtf8(check.Usage());
        EXPECT_FALSE(check.summary.empty());
    }
}
