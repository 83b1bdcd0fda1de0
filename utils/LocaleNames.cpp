#include "utils/LocaleNames.h"

namespace zant
{

namespace
{

constexpr std::uint16_t PrimaryOf(std::uint16_t language) noexcept
{
    return language & 0x3FF;
}

constexpr std::uint16_t SublanguageOf(std::uint16_t language) noexcept
{
    return static_cast<std::uint16_t>(language >> 10);
}

struct Region
{
    std::uint16_t primary;
    std::uint16_t sublanguage;
    std::wstring_view code;
};

struct Language
{
    std::uint16_t primary;
    std::wstring_view code;
};

// Languages whose region decides. Algeria, Morocco and Tunisia use French rather than English.
constexpr Region regions[] = {
    {1, 5, L"fr_MA"}, {1, 6, L"fr_MA"}, {1, 7, L"fr_MA"},  {4, 2, L"zh_CN"},
    {4, 4, L"zh_CN"}, {9, 2, L"en_GB"}, {10, 2, L"es_MX"}, {12, 3, L"fr_CA"},
};

// All other regions of a language. The suite has no Arabic and no Hebrew, but English for their regions.
constexpr Language languages[] = {
    {1, L"en_AE"},  {2, L"bg_BG"},  {4, L"zh_TW"},  {5, L"cs_CZ"},  {6, L"da_DK"},  {7, L"de_DE"},  {8, L"el_GR"},
    {9, L"en_US"},  {10, L"es_ES"}, {11, L"fi_FI"}, {12, L"fr_FR"}, {13, L"en_IL"}, {14, L"hu_HU"}, {16, L"it_IT"},
    {17, L"ja_JP"}, {18, L"ko_KR"}, {19, L"nl_NL"}, {20, L"nb_NO"}, {21, L"pl_PL"}, {22, L"pt_BR"}, {24, L"ro_RO"},
    {25, L"ru_RU"}, {26, L"hr_HR"}, {27, L"sk_SK"}, {29, L"sv_SE"}, {30, L"th_TH"}, {31, L"tr_TR"}, {33, L"id_ID"},
    {34, L"uk_UA"}, {36, L"sl_SI"}, {37, L"et_EE"}, {38, L"lv_LV"}, {39, L"lt_LT"}, {42, L"vi_VN"},
};

} // namespace

std::wstring_view LocaleName(std::uint16_t uiLanguage, std::uint16_t languageId) noexcept
{
    auto const primary = PrimaryOf(uiLanguage);
    auto const sublanguage = SublanguageOf(PrimaryOf(languageId) == primary ? languageId : uiLanguage);
    for (auto const& region : regions)
    {
        if (region.primary == primary && region.sublanguage == sublanguage)
        {
            return region.code;
        }
    }
    for (auto const& language : languages)
    {
        if (language.primary == primary)
        {
            return language.code;
        }
    }
    return L"en_US";
}

} // namespace zant
