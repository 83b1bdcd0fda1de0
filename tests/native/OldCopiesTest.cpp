#include "logging/OldCopies.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>

using namespace zant;

namespace
{

using Names = std::vector<std::wstring>;

// The names to delete at once, and the surplus.
struct Decided
{
    bool operator==(Decided const&) const = default;

    Names atOnce;
    Names surplus;
};

// Today is 14 January 2024.
Decided Decide(Names const& names,
               Names const& days = {L"KZEB 2024-1-14", L"KZEB 2024-1-13", L"KZEB 2024-1-12", L"KZEB 2024-1-11"})
{
    OldCopies copies(L"KZEB", L"KZEB.log", days);
    Decided decided;
    std::ranges::copy_if(names, std::back_inserter(decided.atOnce),
                         [&](auto const& name) { return copies.Judge(name); });
    decided.surplus = copies.TakeSurplus();
    return decided;
}

} // namespace

TEST(OldCopies, OfTheLastFourDaysStay)
{
    EXPECT_EQ(Decide({L"KZEB.log", L"KZEB 2024-1-14 09-00-00.log", L"KZEB 2024-1-13 09-00-00.log",
                      L"KZEB 2024-1-12 09-00-00.log", L"KZEB 2024-1-11 09-00-00.log"}),
              Decided{});
}

TEST(OldCopies, OfEarlierAndLaterDaysGo)
{
    Names const others = {L"KZEB 2024-1-10 09-00-00.log", L"KZEB 2024-1-9 09-00-00.log", L"KZEB 2023-1-14 09-00-00.log",
                          L"KZEB 2024-1-15 09-00-00.log"};
    EXPECT_EQ(Decide(others), (Decided{.atOnce = others, .surplus = {}}));
}

TEST(OldCopies, WhateverElseBeginsWithTheBaseGoes)
{
    Names const others = {L"KZEB", L"KZEB.txt", L"KZEB2.log", L"KZEB.log.bak", L"KZEB 2024-1-1"};
    EXPECT_EQ(Decide(others), (Decided{.atOnce = others, .surplus = {}}));
}

TEST(OldCopies, NamesThatDoNotBeginWithTheBaseStay)
{
    EXPECT_EQ(Decide({L"kzeb 2000-1-1 09-00-00.log", L"other.log", L"XKZEB.log", L"pvq.trace"}), Decided{});
}

// "2024-1-1" is also how 2024-1-14 begins; the text alone counts.
TEST(OldCopies, ADayCountsByTheBeginningOfItsText)
{
    Names const days = {L"KZEB 2024-1-1"};
    EXPECT_EQ(Decide({L"KZEB 2024-1-14 09-00-00.log", L"KZEB 2024-1-1 09-00-00.log"}, days), Decided{});
}

TEST(OldCopies, NoMoreThanFiveStayTheLiveLogAmongThem)
{
    EXPECT_EQ(Decide({L"KZEB.log", L"KZEB 2024-1-14 07-00-00.log", L"KZEB 2024-1-14 01-00-00.log",
                      L"KZEB 2024-1-14 06-00-00.log", L"KZEB 2024-1-14 02-00-00.log", L"KZEB 2024-1-14 05-00-00.log",
                      L"KZEB 2024-1-14 03-00-00.log", L"KZEB 2024-1-14 04-00-00.log"})
                  .surplus,
              (Names{L"KZEB 2024-1-14 01-00-00.log", L"KZEB 2024-1-14 02-00-00.log", L"KZEB 2024-1-14 03-00-00.log"}));
}

TEST(OldCopies, SixAreOneTooMany)
{
    EXPECT_EQ(Decide({L"KZEB.log", L"KZEB 2024-1-14 01-00-00.log", L"KZEB 2024-1-14 02-00-00.log",
                      L"KZEB 2024-1-14 03-00-00.log", L"KZEB 2024-1-14 04-00-00.log", L"KZEB 2024-1-14 05-00-00.log"})
                  .surplus,
              Names{L"KZEB 2024-1-14 01-00-00.log"});
}

// Dates are not padded: the ninth sorts after the twelfth, and so the older copy is the one kept.
TEST(OldCopies, TheOrderIsThatOfTheTextNotOfTime)
{
    Names const days = {L"KZEB 2024-1-12", L"KZEB 2024-1-11", L"KZEB 2024-1-10", L"KZEB 2024-1-9"};
    Names const names = {L"KZEB.log",
                         L"KZEB 2024-1-9 01-00-00.log",
                         L"KZEB 2024-1-10 01-00-00.log",
                         L"KZEB 2024-1-11 01-00-00.log",
                         L"KZEB 2024-1-12 01-00-00.log",
                         L"KZEB 2024-1-12 02-00-00.log"};
    EXPECT_EQ(Decide(names, days).surplus, Names{L"KZEB 2024-1-10 01-00-00.log"});
}
