#include "utils/Utf8.h"
#include "tests/support/WrappedSystem.h"

#include <climits>
#include <gtest/gtest.h>
#include <tuple>
#include <windows.h>

using namespace zant;

WRAP(MultiByteToWideCharCall, MultiByteToWideChar);
WRAP(WideCharToMultiByteCall, WideCharToMultiByte);

namespace
{

// Asked for the size, the system gives it; asked for the text, it says that it wrote one unit less.
int OneLess(auto next, auto... arguments)
{
    auto const buffer = std::get<4>(std::tuple(arguments...));
    return next(arguments...) - (buffer != nullptr ? 1 : 0);
}

} // namespace

TEST(Utf8, IsConvertedToUtf16)
{
    EXPECT_EQ(ToWide("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), L"a\u00E4\u20AC\xD83D\xDE00");
}

TEST(Utf8, OfNothingIsNothing)
{
    EXPECT_EQ(ToWide(""), L"");
    EXPECT_EQ(ToUtf8(L""), "");
}

TEST(Utf8, KeepsZeroCharacters)
{
    EXPECT_EQ(ToWide(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(Utf8, ThatIsNotValidIsRefused)
{
    for (std::string const text : {"\xFF", "\xC3", "\xC3(", "\x80", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
    {
        EXPECT_EQ(ToWide(text), std::nullopt);
    }
}

TEST(Utf8, IsMadeFromUtf16)
{
    EXPECT_EQ(ToUtf8(L"a\u00E4\u20AC\xD83D\xDE00"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Utf8, HasAReplacementCharacterForAnUnpairedSurrogate)
{
    EXPECT_EQ(ToUtf8(L"a\xD800z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(ToUtf8(L"\xDC00"), "\xEF\xBF\xBD");
}

TEST(Utf8, ConvertsLongTexts)
{
    std::string const text(100'000, 'x');
    EXPECT_EQ(ToWide(text), std::wstring(100'000, L'x'));
    EXPECT_EQ(ToUtf8(std::wstring(100'000, L'x')), text);
}

TEST(Utf8, IsNothingWhenTheSystemWritesLessThanItSaid)
{
    test::MultiByteToWideCharCall const wide([](auto next, auto... rest) { return OneLess(next, rest...); });
    test::WideCharToMultiByteCall const narrow([](auto next, auto... rest) { return OneLess(next, rest...); });
    EXPECT_EQ(ToWide("text"), std::nullopt);
    EXPECT_EQ(ToUtf8(L"text"), std::nullopt);
}

TEST(Utf8, ThatIsLongerThanTheSystemConvertsIsRefused)
{
    constexpr std::size_t tooLong = std::size_t{INT_MAX} + 1;
    constexpr auto bytes = tooLong * sizeof(wchar_t);
    auto* const unread = VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS);
    ASSERT_NE(unread, nullptr);
    EXPECT_EQ(ToWide(std::string_view(static_cast<char const*>(unread), tooLong)), std::nullopt);
    EXPECT_EQ(ToUtf8(std::wstring_view(static_cast<wchar_t const*>(unread), tooLong)), std::nullopt);
    VirtualFree(unread, 0, MEM_RELEASE);
}

TEST(Utf8, TextOfEitherWidthIsSeenAsWide)
{
    std::wstring converted;
    EXPECT_STREQ(AsWide(L"a\u00E4", converted), L"a\u00E4");
    EXPECT_EQ(converted, L"");
    EXPECT_STREQ(AsWide("a\xC3\xA4", converted), L"a\u00E4");
    EXPECT_EQ(AsWide("\xFF", converted), nullptr);
}

TEST(Utf8, NullIsSeenAsAnEmptyText)
{
    std::wstring converted;
    constexpr wchar_t const* wide = nullptr;
    constexpr char const* narrow = nullptr;
    EXPECT_STREQ(AsWide(wide, converted), L"");
    EXPECT_STREQ(AsWide(narrow, converted), L"");
}
