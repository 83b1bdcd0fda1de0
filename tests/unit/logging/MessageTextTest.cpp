#include "logging/MessageText.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zant;

namespace
{

template <typename Char>
std::wstring Shown(Char const* format, va_list arguments)
{
    std::wstring storage = L"what was there";
    return std::wstring(MessageText(format, arguments, storage).value_or(L"not UTF-8"));
}

std::wstring Formatted(wchar_t const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const shown = Shown(format, arguments);
    va_end(arguments);
    return shown;
}

std::wstring FormattedNarrow(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const shown = Shown(format, arguments);
    va_end(arguments);
    return shown;
}

} // namespace

TEST(MessageText, AFormatWithoutPercentSignsIsTheMessage)
{
    EXPECT_EQ(Formatted(L""), L"");
    EXPECT_EQ(Formatted(L"plain \u00E4"), L"plain \u00E4");
    EXPECT_EQ(FormattedNarrow(""), L"");
    EXPECT_EQ(FormattedNarrow("plain \xC3\xA4"), L"plain \u00E4");
}

// As in wide formats of the universal C runtime; elsewhere %s is narrow and %S wide.
TEST(MessageText, InAWideFormatPlainStringsAreWide)
{
    EXPECT_EQ(Formatted(L"%s %ls %ws", L"a\u00E4", L"b", L"c"), L"a\u00E4 b c");
    EXPECT_EQ(Formatted(L"%S %hs", "a", "b"), L"a b");
    EXPECT_EQ(Formatted(L"%c%lc%C%hc", L'a', L'\u00E4', 'c', 'd'), L"a\u00E4cd");
}

TEST(MessageText, InANarrowFormatPlainStringsAreNarrow)
{
    EXPECT_EQ(FormattedNarrow("%s %hs", "a\xC3\xA4", "b"), L"a\u00E4 b");
    EXPECT_EQ(FormattedNarrow("%S %ls", L"a", L"b"), L"a b");
    EXPECT_EQ(FormattedNarrow("%c%hc%C%lc", 'a', 'b', L'c', L'd'), L"abcd");
}

TEST(MessageText, NumbersAreFormattedAsTheRuntimeDoes)
{
    EXPECT_EQ(
        Formatted(L"%d %u %08X %I64d %lld %zu %.2f %5d| %-5d|", -1, 2u, 255, -3ll, 4ll, std::size_t{5}, 0.25, 6, 7),
        L"-1 2 000000FF -3 4 5 0.25     6| 7    |");
}

TEST(MessageText, PercentSignsAreHalved)
{
    EXPECT_EQ(Formatted(L"100 %% %ls %%", L"%d%s%n"), L"100 % %d%s%n %");
    EXPECT_EQ(FormattedNarrow("%%%%%%"), L"%%%");
}

TEST(MessageText, WithoutArgumentsPercentSignsStand)
{
    EXPECT_EQ(Shown(L"100 %d %s %n %", nullptr), L"100 %d %s %n %");
    EXPECT_EQ(Shown("100 %d %s %n %", nullptr), L"100 %d %s %n %");
}

// The runtime rejects %n, which writes to memory, like every invalid format: through its handler for invalid
// parameters, which ends the process on Windows. The handler here returns. The older runtime of the coverage build
// never calls it.
#ifdef _UCRT
TEST(MessageText, ABadFormatIsTheRuntimesToRefuse)
{
    static int refused;
    refused = 0;
    auto const former = _set_invalid_parameter_handler(
        [](wchar_t const*, wchar_t const*, wchar_t const*, unsigned, std::uintptr_t) { ++refused; });
    int written = 7;
    Formatted(L"before %n after", &written);
    FormattedNarrow("before %n after", &written);
    _set_invalid_parameter_handler(former);
    EXPECT_EQ(refused, 2);
    EXPECT_EQ(written, 7);
}
#endif

TEST(MessageText, AZeroCharacterEndsTheMessage)
{
    EXPECT_EQ(Formatted(L"a%cb", L'\0'), L"a");
    EXPECT_EQ(FormattedNarrow("a%cb", '\0'), L"a");
}

TEST(MessageText, ANullStringIsNamedAsTheRuntimeDoes)
{
    EXPECT_EQ(Formatted(L"%ls", static_cast<wchar_t const*>(nullptr)), L"(null)");
}

TEST(MessageText, TheCutMayHalveACharacterOfUtf16)
{
    std::wstring const text = std::wstring(4'093, L'x') + L"\xD83D\xDE00";
    EXPECT_EQ(Formatted(L"%ls", text.c_str()), text.substr(0, 4'094));
}

TEST(MessageText, TheCutTakesAHalvedCharacterOfUtf8Off)
{
    std::string const text = std::string(4'093, 'x') + "\xE2\x82\xAC";
    EXPECT_EQ(FormattedNarrow("%s", text.c_str()), std::wstring(4'093, L'x'));
    std::string const other = std::string(4'092, 'x') + "\xC3\xA4y";
    EXPECT_EQ(FormattedNarrow("%s", other.c_str()), std::wstring(4'092, L'x') + L"\u00E4");
}

// Nothing is cut: the string itself ends in the middle of a character.
TEST(MessageText, AHalvedCharacterAtTheEndOfATextOfFullLengthIsRefused)
{
    EXPECT_EQ(FormattedNarrow("%s", (std::string(4'093, 'x') + "\xC3").c_str()), L"not UTF-8");
    EXPECT_EQ(FormattedNarrow("%s", std::string(4'094, 'x').c_str()), std::wstring(4'094, L'x'));
}

TEST(MessageText, InvalidUtf8IsRefused)
{
    EXPECT_EQ(FormattedNarrow("\xFF"), L"not UTF-8");
    EXPECT_EQ(FormattedNarrow("%s", "\xC3("), L"not UTF-8");
    EXPECT_EQ(FormattedNarrow("cut early \xC3"), L"not UTF-8");
}
