#include "utils/WideScan.h"

#include <gtest/gtest.h>
#include <string>
#include <windows.h>

using namespace zant;

// Every length at every place in a block, with the wanted character before and after the string.
TEST(WideScan, FindsTheFirstPlaceOrTheEnd)
{
    for (std::size_t start = 1; start < 12; ++start)
    {
        for (std::size_t length = 0; length < 40; ++length)
        {
            auto text = std::wstring(start, L'%') + std::wstring(length, L'x') + L'\0' + std::wstring(12, L'%');
            auto const* const begin = text.c_str() + start;
            EXPECT_EQ(FindOrEnd(begin, L'%'), begin + length);
            EXPECT_EQ(ViewOf(begin), std::wstring(length, L'x'));
            for (std::size_t place = 0; place < length; ++place)
            {
                text[start + place] = L'%';
                EXPECT_EQ(FindOrEnd(begin, L'%'), begin + place);
                text[start + place] = L'x';
            }
        }
    }
}

TEST(WideScan, TellsCharactersFromTheirBytes)
{
    EXPECT_EQ(ViewOf(L"\u0100\u2500\xD800z"), std::wstring_view(L"\u0100\u2500\xD800z", 4));
    EXPECT_EQ(*FindOrEnd(L"\u2525\u2500%", L'%'), L'%');
}

TEST(WideScan, OfNullIsEmpty)
{
    EXPECT_EQ(ViewOf(nullptr), L"");
}

// The next page must not be read.
TEST(WideScan, StopsAtTheEndOfItsPage)
{
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    auto const pageCharacters = system.dwPageSize / sizeof(wchar_t);
    auto* const pages =
        static_cast<wchar_t*>(VirtualAlloc(nullptr, std::size_t{2} * system.dwPageSize, MEM_RESERVE, PAGE_NOACCESS));
    ASSERT_NE(VirtualAlloc(pages, system.dwPageSize, MEM_COMMIT, PAGE_READWRITE), nullptr);
    for (std::size_t length = 0; length < 20; ++length)
    {
        auto* const text = pages + pageCharacters - length - 1;
        std::fill_n(text, length, L'x');
        text[length] = L'\0';
        EXPECT_EQ(ViewOf(text).size(), length);
    }
    VirtualFree(pages, 0, MEM_RELEASE);
}
