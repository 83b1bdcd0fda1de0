// Texts from UTF-8 to UTF-16 and back, against the tables of the Unicode standard; and where a text was cut.
#include "doctor/log/Utf8.h"
#include "fuzz/Demand.h"
#include "fuzz/Utf8Reference.h"
#include "logging/Utf8Cut.h"
#include "simulator/base/Text.h"
#include "utils/Utf8.h"

#include <algorithm>
#include <cstring>

using namespace fuzz;

namespace
{

void CheckBytes(std::string_view text)
{
    auto const expected = ToUnits(text);
    Demand(zant::ToWide(text) == expected, "the text in UTF-16");
    if (expected)
    {
        Demand(zant::ToUtf8(*expected) == text, "the text there and back");
        Demand(sim::FromUtf8(text) == *expected, "the simulator's text in UTF-16");
    }
    auto repaired = std::string(text);
    Demand(doctor::ReplaceMalformed(repaired) == !expected, "whether bytes belong to no character");
    Demand(repaired == Repaired(text), "the bytes that belong to no character");

    std::string const terminated(text.substr(0, text.find('\0')));
    std::wstring storage;
    auto const* const wide = zant::AsWide(terminated.c_str(), storage);
    auto const first = ToUnits(terminated);
    Demand((wide != nullptr) == first.has_value(), "whether there is a wide string");
    Demand(wide == nullptr || wide == *first, "the wide string");
}

void CheckUnits(std::wstring const& units)
{
    auto const expected = FromUnits(units);
    Demand(zant::ToUtf8(units) == expected, "the text in UTF-8");
    Demand(sim::ToUtf8(units) == expected, "the simulator's text in UTF-8");
    std::wstring unused;
    Demand(zant::AsWide(units.c_str(), unused) == units.c_str() && unused.empty(), "the same string");
}

// An incomplete character: its first byte, and fewer bytes behind that than it tells.
std::size_t SizeOfHalved(std::string_view text)
{
    for (std::size_t size = 1; size < 4 && size <= text.size(); ++size)
    {
        auto const tail = text.substr(text.size() - size);
        auto const first = static_cast<unsigned char>(tail[0]);
        auto const told = first >= 0xF0 ? 4u : first >= 0xE0 ? 3u : first >= 0xC0 ? 2u : 0u;
        auto const othersContinue =
            std::ranges::all_of(tail.substr(1), [](char byte) { return (byte & 0xC0) == 0x80; });
        if (othersContinue && told > size)
        {
            return size;
        }
    }
    return 0;
}

void CheckCuts(std::string_view text)
{
    Demand(zant::WithoutHalvedCharacter(text) == text.substr(0, text.size() - SizeOfHalved(text)),
           "the text without a halved character");
    auto const whole = Repaired(text);
    std::size_t lastStart = 0;
    for (std::size_t cut = 0; cut < whole.size(); ++cut)
    {
        lastStart = FirstCharacter(std::string_view(whole).substr(cut)) ? cut : lastStart;
        Demand(zant::WithoutHalvedCharacter(std::string_view(whole).substr(0, cut)).size() == lastStart,
               "the text cut in a character");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    CheckBytes(bytes);
    CheckCuts(bytes);
    std::wstring units(size / 2, L'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(wchar_t));
    CheckUnits(units);
    return 0;
}
