#include "tests/unit/projection/WrappedRuntime.h"

#include <gtest/gtest.h>
#include <windows.h>

using winrt::hstring;
using namespace test;

namespace
{

std::wstring_view Passed(winrt::param::hstring const& text)
{
    return static_cast<hstring const&>(text);
}

} // namespace

TEST(StringTest, EmptyTextHasNoHandle)
{
    EXPECT_EQ(winrt::get_abi(hstring()), nullptr);
    EXPECT_EQ(winrt::get_abi(hstring(L"")), nullptr);
    EXPECT_TRUE(hstring(L"").empty());
    EXPECT_STREQ(hstring().c_str(), L"");
    EXPECT_EQ(hstring().size(), 0u);
}

TEST(StringTest, KeepsEveryCharacter)
{
    std::wstring const text(L"a\0b\xD800", 4); // a null inside, an unpaired surrogate
    hstring const value(text);
    EXPECT_EQ(value.size(), 4u);
    EXPECT_EQ(std::wstring(value), text);
    EXPECT_EQ(value[3], L'\xD800');
    EXPECT_EQ(std::wstring(value.begin(), value.end()), text);
}

TEST(StringTest, CopiesShareTheText)
{
    hstring const value(L"shared");
    auto const copy = value;
    EXPECT_EQ(copy.c_str(), value.c_str());
}

TEST(StringTest, MovesLeaveNothingBehind)
{
    hstring value(L"moved");
    auto const* const text = value.c_str();
    hstring target(L"old");
    target = std::move(value);
    EXPECT_EQ(target.c_str(), text);
    EXPECT_TRUE(value.empty());
}

TEST(StringTest, SelfAssignmentKeepsTheText)
{
    hstring value(L"self");
    auto& same = value;
    value = same;
    EXPECT_EQ(value, L"self");
    value = std::move(same);
    EXPECT_EQ(value, L"self");
}

TEST(StringTest, ComparesOrdinallyWithEveryKindOfText)
{
    hstring const value(L"URITimerBGTask");
    EXPECT_EQ(value, hstring(L"URITimerBGTask"));
    EXPECT_EQ(value, L"URITimerBGTask");
    EXPECT_EQ(L"URITimerBGTask", value);
    EXPECT_EQ(value, std::wstring(L"URITimerBGTask"));
    EXPECT_EQ(value, std::wstring_view(L"URITimerBGTask"));
    EXPECT_NE(value, L"uritimerbgtask");
    EXPECT_LT(value, hstring(L"a"));
    EXPECT_GT(value, L"A");
}

TEST(StringTest, JoinsWithEveryKindOfText)
{
    hstring const value(L"b");
    EXPECT_EQ(value + value, L"bb");
    EXPECT_EQ(value + L"c", L"bc");
    EXPECT_EQ(L"a" + value, L"ab");
    EXPECT_EQ(std::wstring(L"a") + value + std::wstring_view(L"c"), L"abc");
    EXPECT_EQ(hstring() + hstring(), L"");
}

TEST(StringTest, ServesAsAKey)
{
    EXPECT_EQ(std::hash<hstring>{}(hstring(L"key")), std::hash<hstring>{}(hstring(L"key")));
    EXPECT_NE(std::hash<hstring>{}(hstring(L"key")), std::hash<hstring>{}(hstring(L"other")));
}

TEST(StringTest, HandlesPassInAndOut)
{
    hstring value(L"out");
    auto* const handle = winrt::detach_abi(value);
    EXPECT_TRUE(value.empty());
    hstring const back(handle, winrt::take_ownership_from_abi);
    EXPECT_EQ(back, L"out");
}

TEST(StringTest, FailureToCreateIsRaised)
{
    CreateStringCall const fails([](auto, auto, auto, auto) { return E_OUTOFMEMORY; });
    EXPECT_THROW(hstring(L"text"), std::bad_alloc);
}

TEST(StringTest, FailureToCopyIsRaised)
{
    hstring const value(L"text");
    DuplicateStringCall const fails([](auto, auto, auto) { return E_OUTOFMEMORY; });
    EXPECT_THROW(hstring copy(value), std::bad_alloc);
}

TEST(StringTest, FailureToJoinIsRaised)
{
    hstring const value(L"text");
    {
        PreallocateStringCall const fails([](auto, auto, auto, auto) { return E_OUTOFMEMORY; });
        EXPECT_THROW(value + value, std::bad_alloc);
    }
    PromoteStringCall const fails([](auto, auto, auto) { return E_INVALIDARG; });
    EXPECT_THROW(value + value, winrt::hresult_invalid_argument);
}

TEST(StringParam, LendsLiteralsWithoutCopying)
{
    CreateStringCall const copies([](auto, auto, auto, auto) { return E_UNEXPECTED; });
    auto const* const literal = L"LaunchHOV";
    EXPECT_EQ(Passed(literal).data(), literal);
    std::wstring const text(L"text");
    EXPECT_EQ(Passed(text).data(), text.data());
}

TEST(StringParam, PassesAStringAsItIs)
{
    hstring const value(L"value");
    winrt::param::hstring const passed(value);
    EXPECT_EQ(winrt::get_abi(passed), winrt::get_abi(value));
}

TEST(StringParam, CopiesOfLentTextOutliveIt)
{
    hstring kept;
    {
        std::wstring text(L"short-lived");
        winrt::param::hstring const passed(text);
        kept = passed;
        text.assign(text.size(), L'#');
    }
    EXPECT_EQ(kept, L"short-lived");
}

TEST(StringParam, NamesOfClassesEndWithTheZeroThatTheSystemAsksFor)
{
    constexpr auto name = winrt::name_of<winrt::Windows::Foundation::IInspectable>();
    EXPECT_EQ(name, L"Object");
    EXPECT_EQ(name.data()[name.size()], L'\0');
    EXPECT_EQ(Passed(name), name);
}

TEST(StringParam, FailureToLendIsRaised)
{
    CreateStringReferenceCall const fails([](auto, auto, auto, auto, auto) { return E_OUTOFMEMORY; });
    EXPECT_THROW(Passed(L"LaunchHOV"), std::bad_alloc);
}

TEST(StringConversion, Utf8ComesAndGoes)
{
    EXPECT_EQ(winrt::to_hstring("gr\xC3\xBC\xC3\x9F"), L"gr\x00FC\x00DF");
    EXPECT_EQ(winrt::to_string(L"gr\x00FC\x00DF"), "gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(winrt::to_hstring(std::string_view()), L"");
    EXPECT_EQ(winrt::to_string(std::wstring_view()), "");
}

TEST(StringConversion, InvalidUtf8IsRaised)
{
    EXPECT_THROW(winrt::to_hstring("\xFF"), winrt::hresult_error);
}

TEST(StringConversion, NumbersAreDecimal)
{
    EXPECT_EQ(winrt::to_hstring(0), L"0");
    EXPECT_EQ(winrt::to_hstring(-42), L"-42");
    EXPECT_EQ(winrt::to_hstring(INT64_MIN), L"-9223372036854775808");
    EXPECT_EQ(winrt::to_hstring(UINT64_MAX), L"18446744073709551615");
    EXPECT_EQ(winrt::to_hstring(true), L"true");
    EXPECT_EQ(winrt::to_hstring(false), L"false");
}
