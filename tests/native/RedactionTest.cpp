#include "logging/Redaction.h"

#include "tests/native/MessagePieces.h"
#include "tests/native/RedactionReference.h"

#include <cwctype>
#include <gtest/gtest.h>
#include <memory>
#include <random>

using namespace zant;

namespace
{

constexpr auto notice = "Found access/device token. Log skipped."_utf16;

test::Redacted RedactedNow(Utf16String const& message, LogLevel level = LogLevel::Info,
                           std::vector<Utf16String> const& keys = CredentialKeys())
{
    Utf16String changed;
    Utf16String const redacted(Redact(message, changed, level, keys));
    return {redacted, level};
}

Utf16String Masked(Utf16View message)
{
    Utf16String output(message);
    MaskCredentials(CredentialKeys(), message, output);
    return output;
}

Utf16String WithMaskedRange(Utf16View text, std::size_t openStart, std::size_t openLength, std::size_t closeStart)
{
    Utf16String masked(text);
    MaskRange(masked, openStart, openLength, closeStart);
    return masked;
}

Utf16String Element(Utf16View key, Utf16View content)
{
    Utf16String element;
    element.append("<"_utf16).append(key).append(">"_utf16).append(content);
    return element.append("</"_utf16).append(key).append(">"_utf16);
}

class RedactionOfOneKey : public testing::TestWithParam<std::size_t>
{
  protected:
    Utf16String const key = CredentialKeys().at(GetParam());
};

INSTANTIATE_TEST_SUITE_P(All, RedactionOfOneKey, testing::Range<std::size_t>(0, 9));

} // namespace

TEST(RedactionKeyList, AreNineInTheirOrder)
{
    EXPECT_EQ(CredentialKeys(),
              (std::vector<Utf16String>{
                  Utf16String("proxyusername"_utf16), Utf16String("proxy-user"_utf16), Utf16String("proxyuser"_utf16),
                  Utf16String("user"_utf16), Utf16String("username"_utf16), Utf16String("proxy-password"_utf16),
                  Utf16String("proxypassword"_utf16), Utf16String("password"_utf16), Utf16String("proxypass"_utf16)}));
}

// --- tokens

TEST(RedactionOfTokens, AHeaderBeforeAPayloadIsOne)
{
    EXPECT_TRUE(ContainsToken("x eyJhb.eyJzd"_utf16));
    EXPECT_TRUE(ContainsToken("eyJ.eyJ"_utf16));
    EXPECT_TRUE(ContainsToken(".eyJ.eyJ"_utf16));
}

TEST(RedactionOfTokens, TheRestOfATokenDoesNotMatter)
{
    EXPECT_TRUE(ContainsToken("eyJ and, much later, in another sentence.eyJ"_utf16));
    EXPECT_TRUE(ContainsToken("eyJ eyJ eyJ .eyJ"_utf16));
}

TEST(RedactionOfTokens, APayloadWithoutAHeaderIsNone)
{
    EXPECT_FALSE(ContainsToken("abc.eyJ"_utf16));
    EXPECT_FALSE(ContainsToken(".eyJ"_utf16));
}

TEST(RedactionOfTokens, AHeaderWithoutAPayloadIsNone)
{
    EXPECT_FALSE(ContainsToken("eyJ"_utf16));
    EXPECT_FALSE(ContainsToken("eyJhb eyJzd"_utf16));
    EXPECT_FALSE(ContainsToken(".eyJ then eyJ"_utf16));
    EXPECT_FALSE(ContainsToken("eyJhb.eyKzd.ey J"_utf16));
}

TEST(RedactionOfTokens, NothingElseIsOne)
{
    EXPECT_FALSE(ContainsToken(""_utf16));
    EXPECT_FALSE(ContainsToken("J"_utf16));
    EXPECT_FALSE(ContainsToken("yJ.yJ"_utf16));
    EXPECT_FALSE(ContainsToken("JJJJJJJJJJJJJJJJJJJJJJJJJJJJJJJJJJ"_utf16));
}

TEST(RedactionOfTokens, UpperAndLowerCaseAreTold)
{
    EXPECT_FALSE(ContainsToken("EYJhb.EYJzd"_utf16));
    EXPECT_FALSE(ContainsToken("eyjhb.eyjzd"_utf16));
    EXPECT_FALSE(ContainsToken("eyJhb.EyJzd"_utf16));
}

TEST(RedactionOfTokens, FindsItAtEveryPlaceOfAMessage)
{
    for (std::size_t before = 0; before < 40; ++before)
    {
        for (std::size_t between = 0; between < 40; ++between)
        {
            auto message = Utf16String(before, 'J');
            message.append("eyJ"_utf16).append(between, 'e').append(".eyJ"_utf16);
            EXPECT_TRUE(ContainsToken(message));
            message.pop_back();
            EXPECT_FALSE(ContainsToken(message));
        }
    }
}

// --- the mask

TEST(RedactionMaskRange, PutsFourAsterisksBetweenAnOpeningAndAClosingElement)
{
    EXPECT_EQ(WithMaskedRange("a<b>secret</b>c"_utf16, 1, 3, 10), "a<b>****</b>c"_utf16);
    EXPECT_EQ(WithMaskedRange("<b>s</b>"_utf16, 0, 3, 4), "<b>****</b>"_utf16);
    EXPECT_EQ(WithMaskedRange("<b></b>"_utf16, 0, 3, 3), "<b>****</b>"_utf16);
}

TEST(RedactionMaskRange, RepeatsTheTextFromAClosingElementThatComesFirst)
{
    EXPECT_EQ(WithMaskedRange("</b>-<b>x"_utf16, 5, 3, 0), "</b>-<b>****</b>-<b>x"_utf16);
    EXPECT_EQ(WithMaskedRange("abc"_utf16, 1, 2, 3), "abc****"_utf16);
    EXPECT_EQ(WithMaskedRange("abc"_utf16, 1, 2, 2), "abc****c"_utf16);
}

// --- credentials

TEST_P(RedactionOfOneKey, ItsContentIsMasked)
{
    EXPECT_EQ(Masked(Element(key, "secret"_utf16)), Element(key, "****"_utf16));
}

TEST_P(RedactionOfOneKey, ItsNameIsFoundInAnyCaseAndKeepsIt)
{
    auto name = key;
    for (std::size_t at = 0; at < name.size(); at += 2)
    {
        name[at] = static_cast<Utf16Unit>(name[at] - 'a' + 'A');
    }
    EXPECT_EQ(Masked(Element(name, "Secret"_utf16)), Element(name, "****"_utf16));
}

TEST_P(RedactionOfOneKey, AnEmptyElementStays)
{
    EXPECT_EQ(Masked(Element(key, ""_utf16)), Element(key, ""_utf16));
}

TEST_P(RedactionOfOneKey, ALongerOrShorterNameIsAnother)
{
    for (auto const& name : {key + Utf16String("x"_utf16), Utf16String("x"_utf16) + key, key.substr(0, 3),
                             key + Utf16String(" "_utf16), Utf16String(" "_utf16) + key})
    {
        EXPECT_EQ(Masked(Element(name, "content"_utf16)), Element(name, "content"_utf16));
    }
}

TEST_P(RedactionOfOneKey, ANameThatDiffersInOneUnitIsAnother)
{
    for (std::size_t at = 0; at < key.size(); ++at)
    {
        auto name = key;
        name[at] = 'z';
        EXPECT_EQ(Masked(Element(name, "content"_utf16)), Element(name, "content"_utf16));
    }
}

// The memory ends where the message does, which may be anywhere in a tag.
TEST_P(RedactionOfOneKey, NothingBehindTheMessageIsRead)
{
    auto const element = Element(key, ""_utf16);
    for (std::size_t begin = 0; begin < element.size(); ++begin)
    {
        for (auto end = begin; end <= element.size(); ++end)
        {
            auto const units = std::make_unique<Utf16Unit[]>(end - begin);
            std::copy_n(&element[begin], end - begin, units.get());
            Utf16String output;
            EXPECT_FALSE(MaskCredentials(CredentialKeys(), {units.get(), end - begin}, output));
        }
    }
}

TEST_P(RedactionOfOneKey, ItMayOpenAtTheEndOfAMessage)
{
    auto const opening = Element(key, ""_utf16).substr(0, key.size() + 2);
    auto const message = Element(key, ""_utf16).substr(key.size() + 2) + opening;
    EXPECT_EQ(Masked(message), message + Utf16String("****"_utf16) + message);
}

TEST_P(RedactionOfOneKey, AnElementThatOnlyOpensOrOnlyClosesStays)
{
    auto const element = Element(key, "content"_utf16);
    for (std::size_t length = 0; length < element.size(); ++length)
    {
        EXPECT_EQ(Masked(element.substr(0, length)), element.substr(0, length));
        EXPECT_EQ(Masked(element.substr(element.size() - length)), element.substr(element.size() - length));
    }
}

TEST_P(RedactionOfOneKey, ItIsMaskedAtEveryPlaceOfAMessage)
{
    for (std::size_t before = 0; before < 40; ++before)
    {
        Utf16String const start(before, '<');
        EXPECT_EQ(Masked(start + Element(key, "secret"_utf16) + start), start + Element(key, "****"_utf16) + start);
    }
}

TEST(RedactionOfCredentials, KeepsTheCaseOfNamesAndMasksContentOfAnyLength)
{
    EXPECT_EQ(Masked("<ProxyPassword>abc</ProxyPassword>"_utf16), "<ProxyPassword>****</ProxyPassword>"_utf16);
    EXPECT_EQ(Masked("<PASSWORD>x</PASSWORD>"_utf16), "<PASSWORD>****</PASSWORD>"_utf16);
    EXPECT_EQ(Masked("<Password>x</pASSWORD>"_utf16), "<Password>****</pASSWORD>"_utf16);
    EXPECT_EQ(Masked(Element("user"_utf16, Utf16String(10'000, 'x'))), "<user>****</user>"_utf16);
}

TEST(RedactionOfCredentials, MasksWhateverTheContentIs)
{
    EXPECT_EQ(Masked("<user>a\r\nb</user>"_utf16), "<user>****</user>"_utf16);
    EXPECT_EQ(Masked("<user><b>a</b></user>"_utf16), "<user>****</user>"_utf16);
    EXPECT_EQ(Masked("<user><user>a</user>"_utf16), "<user>****</user>"_utf16);
    EXPECT_EQ(Masked("<user>****</user>"_utf16), "<user>****</user>"_utf16);
    EXPECT_EQ(Masked("<user>\0</user>"_utf16), "<user>****</user>"_utf16);
}

TEST(RedactionOfCredentials, LeavesOtherTextAsItIs)
{
    for (auto const text : {""_utf16, "<"_utf16, "<u"_utf16, "</"_utf16, "</u"_utf16, "plain"_utf16, "<b>a</b>"_utf16,
                            "<user>"_utf16, "< user>a</ user>"_utf16, "<user/>"_utf16, "<<user>a<//user>"_utf16})
    {
        EXPECT_EQ(Masked(text), text);
    }
}

TEST(RedactionOfCredentials, MasksEachOfSeveralKeys)
{
    EXPECT_EQ(Masked("1<password>a</password>2<ProxyUser>bcdefg</ProxyUser>3<username>h</username>4"_utf16),
              "1<password>****</password>2<ProxyUser>****</ProxyUser>3<username>****</username>4"_utf16);
}

TEST(RedactionOfCredentials, MasksTheFirstElementOfAKeyAlone)
{
    EXPECT_EQ(Masked("<user>a</user><user>b</user>"_utf16), "<user>****</user><user>b</user>"_utf16);
}

TEST(RedactionOfCredentials, AnElementThatClosesFirstIsRepeatedBehindTheMask)
{
    EXPECT_EQ(Masked("</user> then <user>x"_utf16), "</user> then <user>****</user> then <user>x"_utf16);
    EXPECT_EQ(Masked("</password></user><user>x<password>y"_utf16),
              "</password></user><user>****</user><user>x<password>****</password></user><user>****</user><user>x"
              "<password>y"_utf16);
}

TEST(RedactionOfCredentials, AKeyWithinAnotherIsGoneWithIt)
{
    EXPECT_EQ(Masked("<user><password>a</password></user>"_utf16), "<user>****</user>"_utf16);
    EXPECT_EQ(Masked("<password><user>a</user></password>"_utf16), "<password>****</password>"_utf16);
}

TEST(RedactionOfCredentials, WhatAMaskHasSwallowedIsLookedForBehindIt)
{
    EXPECT_EQ(Masked("<user>a<password>b</password></user> <password>c</password>"_utf16),
              "<user>****</user> <password>****</password>"_utf16);
    EXPECT_EQ(Masked("<user><password></user> <password>c</password>"_utf16),
              "<user>****</user> <password>****</password>"_utf16);
    EXPECT_EQ(Masked("<password><user></password></user>c</password>"_utf16), "<password>****</password>"_utf16);
}

TEST(RedactionOfCredentials, KeysAreMaskedInTheOrderOfTheList)
{
    auto const text = "<user>a<password>b</user>c</password>"_utf16;
    EXPECT_EQ(Masked(text), "<user>****</user>c</password>"_utf16);
    Utf16String output(text);
    MaskCredentials({Utf16String("password"_utf16), Utf16String("user"_utf16)}, text, output);
    EXPECT_EQ(output, "<user>a<password>****</password>"_utf16);
}

TEST(RedactionOfCredentials, SaysWhetherItMasked)
{
    Utf16String output("before"_utf16);
    for (auto const text :
         {""_utf16, "plain"_utf16, "<b>a</b>"_utf16, "<user></user>"_utf16, "<user>a<password>b"_utf16})
    {
        EXPECT_FALSE(MaskCredentials(CredentialKeys(), text, output));
        EXPECT_EQ(output, "before"_utf16);
    }
    for (auto const text : {"<user>a</user>"_utf16, "<user><password>a</user></password>"_utf16})
    {
        output = "before"_utf16;
        EXPECT_TRUE(MaskCredentials(CredentialKeys(), text, output));
        EXPECT_EQ(output.substr(0, 10), "<user>****"_utf16);
    }
}

// Tags that touch the tag of another key: an element may begin where the one before it ends, and no earlier.
TEST(RedactionOfCredentials, ElementsOfSeveralKeysMayTouch)
{
    EXPECT_EQ(Masked("<user>a</user><username>b</username>"_utf16), "<user>****</user><username>****</username>"_utf16);
    EXPECT_EQ(Masked("<user><username></user>b</username>"_utf16), "<user>****</user>b</username>"_utf16);
    EXPECT_EQ(Masked("<username><user></username>b</user>"_utf16), "<username><user>****</user>"_utf16);
    EXPECT_EQ(Masked("<user></user><username>b</username>"_utf16), "<user></user><username>****</username>"_utf16);
    EXPECT_EQ(Masked("<username><user></user></username>"_utf16), "<username>****</username>"_utf16);
}

TEST(RedactionOfCredentials, WithoutKeysNothingIsMasked)
{
    auto const text = "<user>a</user>"_utf16;
    Utf16String output(text);
    MaskCredentials({}, text, output);
    EXPECT_EQ(output, text);
}

// Each unit there is in the place of a letter and of the hyphen of a name.
TEST(RedactionOfCredentials, OfAllUnitsOnlyAToZHaveAnUpperCase)
{
    auto const element = Element("proxy-user"_utf16, "secret"_utf16);
    for (std::size_t const place : {1u, 6u})
    {
        for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
        {
            auto changed = element;
            changed[place] = static_cast<Utf16Unit>(unit);
            auto const lower = unit >= 'A' && unit <= 'Z' ? unit - 'A' + 'a' : unit;
            ASSERT_EQ(Masked(changed) != changed, lower == element[place]) << unit;
        }
    }
}

#ifdef _WIN32
TEST(RedactionOfCredentials, TheRuntimesLowerCasingChangesTheSameUnits)
{
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
    {
        auto const wide = static_cast<wchar_t>(unit);
        EXPECT_EQ(test::LoweredCopy(std::wstring(1, wide))[0], static_cast<wchar_t>(std::towlower(wide))) << unit;
    }
}
#endif

// --- both

TEST(Redaction, AMessageWithATokenIsReplacedByANoticeAtWarn)
{
    Utf16String const message("sent eyJhb.eyJzd.c2ln"_utf16);
    for (auto const level : {10, 20, 30, 40, 50, 60, 70, 35})
    {
        EXPECT_EQ(RedactedNow(message, LogLevel{level}), (test::Redacted{Utf16String(notice), LogLevel::Warn}));
    }
}

TEST(Redaction, AMessageWithCredentialsKeepsItsLevel)
{
    for (auto const level : {10, 20, 30, 40, 50, 60, 70, 35})
    {
        EXPECT_EQ(RedactedNow(Utf16String("a <user>b</user>"_utf16), LogLevel{level}),
                  (test::Redacted{Utf16String("a <user>****</user>"_utf16), LogLevel{level}}));
    }
}

TEST(Redaction, ATokenComesBeforeCredentials)
{
    EXPECT_EQ(RedactedNow(Utf16String("<user>b</user> eyJhb.eyJzd"_utf16)).message, notice);
    EXPECT_EQ(RedactedNow(Utf16String("<user>eyJhb.eyJzd</user>"_utf16)).message, notice);
}

TEST(Redaction, HalfATokenIsWrittenAndItsMessageMasked)
{
    EXPECT_EQ(RedactedNow(Utf16String("eyJhb <user>b</user>"_utf16)),
              (test::Redacted{Utf16String("eyJhb <user>****</user>"_utf16), LogLevel::Info}));
    EXPECT_EQ(RedactedNow(Utf16String("abc.eyJ"_utf16)).message, "abc.eyJ"_utf16);
}

TEST(Redaction, NothingOfAFormerMessageComesBack)
{
    auto const keys = CredentialKeys();
    auto level = LogLevel::Info;
    Utf16String changed;
    EXPECT_EQ(Redact("a long text <user>b</user> and its end"_utf16, changed, level, keys),
              "a long text <user>****</user> and its end"_utf16);
    EXPECT_EQ(Redact("<user>c</user>"_utf16, changed, level, keys), "<user>****</user>"_utf16);
    EXPECT_EQ(Redact("plain"_utf16, changed, level, keys), "plain"_utf16);
    EXPECT_EQ(Redact(""_utf16, changed, level, keys), ""_utf16);
}

TEST(Redaction, AMessageThatKeepsItsTextIsNotCopied)
{
    auto const keys = CredentialKeys();
    auto level = LogLevel::Info;
    Utf16String changed;
    for (auto const message : {"plain"_utf16, "<b>a</b>"_utf16, "<user></user>"_utf16, "<user>a<password>b"_utf16})
    {
        EXPECT_EQ(Redact(message, changed, level, keys).data(), message.data());
        EXPECT_EQ(changed, ""_utf16);
    }
}

// The same messages at each run.
TEST(Redaction, AgreesWithTheRulesWorkedOutOneByOne)
{
    test::MessagePieces const pieces;
    std::mt19937 random(4'094);
    auto reversed = CredentialKeys();
    std::ranges::reverse(reversed);
    auto const given = std::vector{CredentialKeys(), reversed};
    std::size_t masked = 0;
    for (int count = 0; count < 20'000; ++count)
    {
        std::vector<std::uint8_t> choices(random() % 40);
        std::ranges::generate(choices, [&] { return static_cast<std::uint8_t>(random()); });
        auto const message = pieces.Message(choices);
        auto const& keys = given[random() % 2];
        auto const expected = test::RedactedByTheRules(message, LogLevel::Info, keys);
        ASSERT_EQ(RedactedNow(message, LogLevel::Info, keys), expected) << "message " << count;
        auto const anyUnits = test::MessagePieces::Units(choices);
        ASSERT_EQ(RedactedNow(anyUnits, LogLevel::Info, keys), test::RedactedByTheRules(anyUnits, LogLevel::Info, keys))
            << "units " << count;
        masked += expected.message != message && expected.message != notice ? 1 : 0;
    }
    EXPECT_GT(masked, 3'000u);
}
