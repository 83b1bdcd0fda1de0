#include "utils/LocaleNames.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace zant;

namespace
{

std::uint16_t Identifier(unsigned primary, unsigned sublanguage)
{
    return static_cast<std::uint16_t>(sublanguage << 10 | primary);
}

// Both languages of Windows are the same.
std::wstring_view NameOf(unsigned primary, unsigned sublanguage)
{
    return LocaleName(Identifier(primary, sublanguage), Identifier(primary, sublanguage));
}

// The mapping once more, language by language.
std::wstring ExpectedName(unsigned primary, unsigned sublanguage)
{
    switch (primary)
    {
    case 1: // Arabic
        return sublanguage == 5 || sublanguage == 6 || sublanguage == 7 ? L"fr_MA" : L"en_AE";
    case 2: // Bulgarian
        return L"bg_BG";
    case 4: // Chinese
        return sublanguage == 2 || sublanguage == 4 ? L"zh_CN" : L"zh_TW";
    case 5: // Czech
        return L"cs_CZ";
    case 6: // Danish
        return L"da_DK";
    case 7: // German
        return L"de_DE";
    case 8: // Greek
        return L"el_GR";
    case 9: // English
        return sublanguage == 2 ? L"en_GB" : L"en_US";
    case 10: // Spanish
        return sublanguage == 2 ? L"es_MX" : L"es_ES";
    case 11: // Finnish
        return L"fi_FI";
    case 12: // French
        return sublanguage == 3 ? L"fr_CA" : L"fr_FR";
    case 13: // Hebrew
        return L"en_IL";
    case 14: // Hungarian
        return L"hu_HU";
    case 16: // Italian
        return L"it_IT";
    case 17: // Japanese
        return L"ja_JP";
    case 18: // Korean
        return L"ko_KR";
    case 19: // Dutch
        return L"nl_NL";
    case 20: // Norwegian
        return L"nb_NO";
    case 21: // Polish
        return L"pl_PL";
    case 22: // Portuguese
        return L"pt_BR";
    case 24: // Romanian
        return L"ro_RO";
    case 25: // Russian
        return L"ru_RU";
    case 26: // Croatian
        return L"hr_HR";
    case 27: // Slovak
        return L"sk_SK";
    case 29: // Swedish
        return L"sv_SE";
    case 30: // Thai
        return L"th_TH";
    case 31: // Turkish
        return L"tr_TR";
    case 33: // Indonesian
        return L"id_ID";
    case 34: // Ukrainian
        return L"uk_UA";
    case 36: // Slovenian
        return L"sl_SI";
    case 37: // Estonian
        return L"et_EE";
    case 38: // Latvian
        return L"lv_LV";
    case 39: // Lithuanian
        return L"lt_LT";
    case 42: // Vietnamese
        return L"vi_VN";
    default:
        return L"en_US";
    }
}

} // namespace

TEST(LocaleNames, IsAsTheRulesSayForEveryIdentifier)
{
    for (unsigned primary = 0; primary < 1024; ++primary)
    {
        for (unsigned sublanguage = 0; sublanguage < 64; ++sublanguage)
        {
            ASSERT_EQ(NameOf(primary, sublanguage), ExpectedName(primary, sublanguage))
                << primary << ", " << sublanguage;
        }
    }
}

TEST(LocaleNames, TakesTheRegionOfTheFormatsInTheSameLanguage)
{
    for (unsigned primary = 0; primary < 128; ++primary)
    {
        for (unsigned uiSublanguage = 0; uiSublanguage < 64; ++uiSublanguage)
        {
            for (unsigned sublanguage = 0; sublanguage < 64; ++sublanguage)
            {
                ASSERT_EQ(LocaleName(Identifier(primary, uiSublanguage), Identifier(primary, sublanguage)),
                          ExpectedName(primary, sublanguage))
                    << primary << ", " << uiSublanguage << ", " << sublanguage;
            }
        }
    }
}

TEST(LocaleNames, KeepsTheRegionOfTheUserInterfaceWhenTheFormatsAreOfAnotherLanguage)
{
    for (unsigned primary = 0; primary < 128; ++primary)
    {
        for (unsigned uiSublanguage = 0; uiSublanguage < 64; ++uiSublanguage)
        {
            for (unsigned sublanguage = 0; sublanguage < 64; ++sublanguage)
            {
                ASSERT_EQ(LocaleName(Identifier(primary, uiSublanguage), Identifier(primary ^ 1, sublanguage)),
                          ExpectedName(primary, uiSublanguage))
                    << primary << ", " << uiSublanguage << ", " << sublanguage;
            }
        }
    }
}

TEST(LocaleNames, IsOneOfTheSuitesLocalesAndEachOfThem)
{
    std::set<std::wstring> const suite = {
        L"en_US", L"en_GB", L"en_AE", L"fr_MA", L"fr_FR", L"fr_CA", L"es_ES", L"es_MX", L"zh_TW", L"zh_CN",
        L"en_IL", L"da_DK", L"nl_NL", L"fi_FI", L"de_DE", L"it_IT", L"ja_JP", L"ko_KR", L"sv_SE", L"pl_PL",
        L"cs_CZ", L"tr_TR", L"el_GR", L"ru_RU", L"ro_RO", L"hr_HR", L"lv_LV", L"et_EE", L"sk_SK", L"sl_SI",
        L"hu_HU", L"nb_NO", L"bg_BG", L"uk_UA", L"th_TH", L"pt_BR", L"lt_LT", L"id_ID", L"vi_VN"};
    ASSERT_EQ(suite.size(), 39u);
    std::set<std::wstring> found;
    for (unsigned language = 0; language <= 0xFFFF; ++language)
    {
        found.emplace(LocaleName(static_cast<std::uint16_t>(language), static_cast<std::uint16_t>(language)));
    }
    EXPECT_EQ(found, suite);
}

TEST(LocaleNames, OfSwissGermanWithCanadianFormatsIsGerman)
{
    EXPECT_EQ(LocaleName(0x0807, 0x0C0C), L"de_DE");
}

TEST(LocaleNames, OfAmericanEnglishWithBritishFormatsIsBritish)
{
    EXPECT_EQ(LocaleName(0x0409, 0x0809), L"en_GB");
}

TEST(LocaleNames, OfBritishEnglishWithGermanFormatsIsBritish)
{
    EXPECT_EQ(LocaleName(0x0809, 0x0407), L"en_GB");
}

TEST(LocaleNames, OfPortugalIsThatOfBrazil)
{
    EXPECT_EQ(LocaleName(0x0816, 0x0816), L"pt_BR");
}

TEST(LocaleNames, OfALanguageThatTheSuiteLacksIsAmericanEnglish)
{
    EXPECT_EQ(LocaleName(0x0403, 0x0403), L"en_US") << "Catalan";
    EXPECT_EQ(LocaleName(0x0403, 0x0809), L"en_US") << "Catalan with British formats";
}
