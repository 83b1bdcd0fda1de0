#include "utils/Locale.h"
#include "tests/support/Files.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/UserRegistry.h"
#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>
#include <vector>
#include <windows.h>

using namespace test;
using namespace zant;

namespace
{

// Zero-terminated, as programs store a string.
std::string Terminated(std::wstring_view text)
{
    return test::Utf16(text) + std::string(2, '\0');
}

// A user of a French Canadian Windows, initially without a preference. Opened registry keys must be closed.
class Locale : public testing::Test
{
  protected:
    Locale() { m_openKeys.reserve(8); } // also there when memory is short

    ~Locale() override { EXPECT_EQ(m_openKeys, std::vector<HKEY>()); }

    // A REG_SZ value is zero-terminated: the system reads beyond the end of one that is not.
    void Prefer(std::string_view data, DWORD type = REG_SZ) const
    {
        registry.Set(L"Software\\Velmo\\VLCID", L"QDLangPref", type, data);
    }

    static std::wstring UserLocale()
    {
        std::wstring locale = L"former";
        EXPECT_TRUE(GetUserLocale(locale));
        return locale;
    }

    test::UserRegistry registry;
    LANGID uiLanguage = 0x0C0C;
    LANGID langId = 0x0C0C;

  private:
    std::vector<HKEY> m_openKeys;
    GetUiLanguageCall m_uiLanguage{[this](auto) { return uiLanguage; }};
    GetLangIdCall m_langId{[this](auto) { return langId; }};
    OpenKeyCall m_open{[this](auto next, HKEY parent, auto path, DWORD options, REGSAM access, HKEY* key) {
        auto const result = next(parent, path, options, access, key);
        if (result == ERROR_SUCCESS)
        {
            m_openKeys.push_back(*key);
        }
        return result;
    }};
    CloseKeyCall m_close{[this](auto next, HKEY key) {
        std::erase(m_openKeys, key);
        return next(key);
    }};
};

TEST_F(Locale, IsThePreference)
{
    Prefer(Terminated(L"de_DE"));
    EXPECT_EQ(ReadLocalePreference(), L"de_DE");
    EXPECT_EQ(UserLocale(), L"de_DE");
}

TEST_F(Locale, IsAnUnknownPreferenceAsItStands)
{
    for (auto const* const preference : {L"xx_YY", L" ", L"en-US", L"0", L"a text that is no locale at all \x20AC"})
    {
        Prefer(Terminated(preference));
        EXPECT_EQ(UserLocale(), preference);
    }
}

TEST_F(Locale, IsAPreferenceOfAnyLength)
{
    std::wstring const preference(5'000, L'x');
    Prefer(Terminated(preference));
    EXPECT_EQ(UserLocale(), preference);
}

TEST_F(Locale, IsThatOfTheLanguagesWithoutAPreference)
{
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenTheKeyHasNoPreference)
{
    registry.Set(L"Software\\Velmo\\VLCID", L"Other", REG_SZ, Terminated(L"de_DE"));
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenThePreferenceIsEmpty)
{
    Prefer(Terminated(L""));
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
    for (auto const bytes : {0u, 1u, 3u})
    {
        Prefer(std::string(bytes, '\0'), REG_BINARY);
        EXPECT_EQ(ReadLocalePreference(), L"") << bytes;
        EXPECT_EQ(UserLocale(), L"fr_CA") << bytes;
    }
}

TEST_F(Locale, IsNotAskedOfTheRegistryAgainWhenThePreferenceHasNoBytes)
{
    Prefer("", REG_BINARY);
    auto queries = 0;
    QueryValueCall const query(Counting(queries));
    ReadLocalePreference();
    EXPECT_EQ(queries, 1);
}

TEST_F(Locale, IsAPreferenceOfAnyRegistryType)
{
    Prefer(Terminated(L"%xx%"), REG_EXPAND_SZ);
    EXPECT_EQ(UserLocale(), L"%xx%");
    Prefer(Terminated(L"xx_YY") + Terminated(L"zz_ZZ") + Terminated(L""), REG_MULTI_SZ);
    EXPECT_EQ(UserLocale(), L"xx_YY");
    Prefer(test::Utf16(L"xy"), REG_DWORD);
    EXPECT_EQ(UserLocale(), L"xy");
    Prefer(test::Utf16(L"abcd"), REG_QWORD);
    EXPECT_EQ(UserLocale(), L"abcd");
    Prefer(test::Utf16(L"xx_YY"), REG_BINARY);
    EXPECT_EQ(UserLocale(), L"xx_YY");
}

TEST_F(Locale, EndsAtTheFirstZeroOfThePreference)
{
    Prefer(Terminated(L"xx_YY") + test::Utf16(L"rest"), REG_BINARY);
    EXPECT_EQ(UserLocale(), L"xx_YY");
}

TEST_F(Locale, IsAPreferenceStoredWithoutItsZero)
{
    Prefer(test::Utf16(L"xx_YY"), REG_BINARY);
    EXPECT_EQ(UserLocale(), L"xx_YY");
}

TEST_F(Locale, IsAPreferenceWithAnOddByte)
{
    Prefer(test::Utf16(L"xx") + "y", REG_BINARY);
    EXPECT_EQ(UserLocale(), L"xxy");
}

// Stores another preference between the query for the size and the one for the value.
class LocaleStoredMeanwhile : public Locale
{
  protected:
    void PreferMeanwhile(std::string const& data) { m_later = data; }

  private:
    std::string m_later;
    QueryValueCall m_query{
        [this](auto next, HKEY key, wchar_t const* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
            if (data != nullptr)
            {
                Prefer(m_later, REG_BINARY);
            }
            return next(key, name, reserved, type, data, size);
        }};
};

TEST_F(LocaleStoredMeanwhile, IsStillReadUpToTwiceTheFormerSize)
{
    Prefer(test::Utf16(L"xx_YY"), REG_BINARY);
    PreferMeanwhile(test::Utf16(L"0123456789"));
    EXPECT_EQ(UserLocale(), L"0123456789");
}

TEST_F(LocaleStoredMeanwhile, IsThatOfTheLanguagesWhenItOutgrowsTheBuffer)
{
    Prefer(test::Utf16(L"xx_YY"), REG_BINARY);
    PreferMeanwhile(test::Utf16(L"0123456789x"));
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(LocaleStoredMeanwhile, IsTheShorterOneThatCame)
{
    Prefer(Terminated(L"a long preference"));
    PreferMeanwhile(Terminated(L"xx"));
    EXPECT_EQ(UserLocale(), L"xx");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenTheKeyCannotBeOpened)
{
    Prefer(Terminated(L"de_DE"));
    OpenKeyCall const denied([](auto...) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenTheSizeCannotBeRead)
{
    Prefer(Terminated(L"de_DE"));
    QueryValueCall const failing([](auto, HKEY, auto, auto, auto, BYTE*, DWORD* size) -> LSTATUS {
        *size = 12;
        return ERROR_ACCESS_DENIED;
    });
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenTheValueCannotBeRead)
{
    Prefer(Terminated(L"de_DE"));
    QueryValueCall const failing([](auto next, HKEY key, auto name, auto reserved, auto type, BYTE* data, DWORD* size) {
        auto const result = next(key, name, reserved, type, data, size);
        return data != nullptr ? static_cast<LSTATUS>(ERROR_ACCESS_DENIED) : result;
    });
    EXPECT_EQ(ReadLocalePreference(), L"");
    EXPECT_EQ(UserLocale(), L"fr_CA");
}

TEST_F(Locale, IsThatOfTheLanguagesWhenMemoryIsShort)
{
    Prefer(Terminated(L"a long preference"));
    std::wstring locale;
    {
        test::ShortMemory const memory;
        GetUserLocale(locale);
    }
    EXPECT_EQ(locale, L"fr_CA");
}

TEST_F(Locale, IsReadInTheUsersHiveForReadingOnly)
{
    auto opened = 0;
    OpenKeyCall const open([&](auto next, HKEY parent, wchar_t const* path, DWORD options, REGSAM access, HKEY* key) {
        ++opened;
        EXPECT_EQ(parent, HKEY_CURRENT_USER);
        EXPECT_STREQ(path, L"Software\\Velmo\\VLCID");
        EXPECT_EQ(options, 0u);
        EXPECT_EQ(access, static_cast<REGSAM>(KEY_READ));
        return next(parent, path, options, access, key);
    });
    ReadLocalePreference();
    EXPECT_EQ(opened, 1);
}

TEST_F(Locale, IsThatOfTheUserInterfaceInTheRegionOfItsFormats)
{
    uiLanguage = 0x0409;
    langId = 0x0809;
    EXPECT_EQ(UserLocale(), L"en_GB");
    uiLanguage = 0x0809;
    langId = 0x0407;
    EXPECT_EQ(UserLocale(), L"en_GB");
    uiLanguage = 0x0807;
    langId = 0x0C0C;
    EXPECT_EQ(UserLocale(), L"de_DE");
    uiLanguage = 0x0403;
    langId = 0x0403;
    EXPECT_EQ(UserLocale(), L"en_US");
}

} // namespace

WRAP(GetLangIdCall, GetUserDefaultLangID);
WRAP(GetUiLanguageCall, GetUserDefaultUILanguage);
WRAP(CloseKeyCall, RegCloseKey);
WRAP(OpenKeyCall, RegOpenKeyExW);
WRAP(QueryValueCall, RegQueryValueExW);
