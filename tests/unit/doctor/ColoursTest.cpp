#include "console/Colours.h"

#include "tests/unit/doctor/ConsoleMode.h"

#include <gtest/gtest.h>
#include <vector>

WRAP(GetConsoleModeCall, GetConsoleMode);
WRAP(SetConsoleModeCall, SetConsoleMode);

namespace
{

// Standard output is a console, or no console, which accepts a mode or refuses it.
class Colours : public testing::Test
{
  protected:
    ~Colours() override { SetEnvironmentVariableW(L"NO_COLOR", nullptr); }

    BOOL m_isConsole = TRUE;
    BOOL m_accepts = TRUE;
    std::vector<DWORD> m_modes; // that were set

  private:
    test::GetConsoleModeCall m_get{[this](auto&&, HANDLE handle, DWORD* mode) {
        EXPECT_EQ(handle, GetStdHandle(STD_OUTPUT_HANDLE));
        *mode = ENABLE_WRAP_AT_EOL_OUTPUT;
        return m_isConsole;
    }};
    test::SetConsoleModeCall m_set{[this](auto&&, HANDLE handle, DWORD mode) {
        EXPECT_EQ(handle, GetStdHandle(STD_OUTPUT_HANDLE));
        m_modes.push_back(mode);
        return m_accepts;
    }};
};

} // namespace

TEST_F(Colours, AreShownByAConsoleThatIsAskedTo)
{
    EXPECT_TRUE(console::TakesColours());
    EXPECT_EQ(m_modes, (std::vector<DWORD>{ENABLE_WRAP_AT_EOL_OUTPUT | ENABLE_PROCESSED_OUTPUT |
                                           ENABLE_VIRTUAL_TERMINAL_PROCESSING}));
}

TEST_F(Colours, AreNotShownByAConsoleThatRefuses)
{
    m_accepts = FALSE;
    EXPECT_FALSE(console::TakesColours());
    EXPECT_EQ(m_modes.size(), 1u);
}

TEST_F(Colours, AreNotShownByAFileOrAPipe)
{
    m_isConsole = FALSE;
    EXPECT_FALSE(console::TakesColours());
    EXPECT_EQ(m_modes, std::vector<DWORD>{});
}

TEST_F(Colours, AreDeclinedInTheEnvironment)
{
    SetEnvironmentVariableW(L"NO_COLOR", L"1");
    EXPECT_FALSE(console::TakesColours());
    EXPECT_EQ(m_modes, std::vector<DWORD>{});
    SetEnvironmentVariableW(L"NO_COLOR", L"");
    EXPECT_TRUE(console::TakesColours());
}
