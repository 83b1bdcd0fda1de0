// The names of dated copies, against a calendar that counts day by day.
#include "fuzz/Choices.h"
#include "fuzz/Demand.h"
#include "logging/DatedName.h"

#include <string>

using namespace fuzz;
using namespace zant;

namespace
{

bool IsLeap(unsigned year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

unsigned DaysOf(unsigned year, unsigned month)
{
    static constexpr std::array<unsigned, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1] + (month == 2 && IsLeap(year) ? 1 : 0);
}

struct Date
{
    unsigned year, month, day;

    void GoBack()
    {
        if (--day == 0)
        {
            month = month == 1 ? 12 : month - 1;
            year -= month == 12 ? 1 : 0;
            day = DaysOf(year, month);
        }
    }

    std::wstring Text() const
    {
        return std::to_wstring(year) + L"-" + std::to_wstring(month) + L"-" + std::to_wstring(day);
    }
};

std::wstring TwoDigits(unsigned number)
{
    return {static_cast<wchar_t>(L'0' + number / 10), static_cast<wchar_t>(L'0' + number % 10)};
}

// Folder, name and extension, each of which may have dots; only the name's last one begins the extension.
struct PathParts
{
    std::wstring start;
    std::wstring extension;
};

PathParts SomePath(Choices& choices)
{
    auto const folder = choices.Flag() ? L"C:\\" + choices.Text(6, L"ab.\\") + L"\\" : std::wstring();
    auto const stem = choices.Text(5, L"KZEB \u00FC");
    return choices.Flag() ? PathParts{folder + choices.Text(4, L"a.b") + stem, L"." + choices.Text(3, L"log ")}
                          : PathParts{folder + stem, L""};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices({data, size});
    Date date{1602 + choices.Below(3000), 1 + choices.Below(12), 0};
    date.day = choices.Flag() ? 1 : 1 + choices.Below(DaysOf(date.year, date.month));
    SYSTEMTIME local = {};
    local.wYear = static_cast<WORD>(date.year);
    local.wMonth = static_cast<WORD>(date.month);
    local.wDay = static_cast<WORD>(date.day);
    local.wHour = static_cast<WORD>(choices.Below(24));
    local.wMinute = static_cast<WORD>(choices.Below(60));
    local.wSecond = static_cast<WORD>(choices.Below(60));
    local.wMilliseconds = static_cast<WORD>(choices.Below(1000));

    auto const [start, extension] = SomePath(choices);
    auto const time = TwoDigits(local.wHour) + L"-" + TwoDigits(local.wMinute) + L"-" + TwoDigits(local.wSecond);
    Demand(DatedPath(start + extension, local) == start + L" " + date.Text() + L" " + time + extension,
           "the dated name");
    for (unsigned daysBack = 0; daysBack < 64; ++daysBack)
    {
        Demand(DateText(local, daysBack) == date.Text(), "the date some days back");
        date.GoBack();
    }
    return 0;
}
