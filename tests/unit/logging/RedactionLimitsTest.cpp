// What redaction leaves in the log, as listed in docs/log.md: known limits.
#include "tests/unit/logging/RedactedLog.h"

using namespace test;
using namespace zant;

namespace
{

class RedactionLimits : public RedactedLog
{
  protected:
    // Whether the log of one message shows the secret.
    bool Shows(std::wstring const& message)
    {
        LogAt(Opened(), 0, message.c_str());
        return AnyFileHolds(secret);
    }
};

} // namespace

TEST_F(RedactionLimits, ASecondElementOfAKeyIsShown)
{
    EXPECT_TRUE(Shows(L"<user>a</user><user>" + secret + L"</user>"));
    EXPECT_EQ(Messages(), std::vector{L"<user>****</user><user>" + secret + L"</user>"});
}

TEST_F(RedactionLimits, BehindAnEmptyElementTheNextOneIsShown)
{
    EXPECT_TRUE(Shows(L"<user></user><user>" + secret + L"</user>"));
}

TEST_F(RedactionLimits, AnElementThatTheCutLeavesOpenIsShown)
{
    auto const message = std::wstring(4'094 - element.size() + 1, L'x') + element;
    LogWide(Opened(), LogLevel::Info, L"%ls", message.c_str());
    EXPECT_TRUE(AnyFileHolds(secret));
}

TEST_F(RedactionLimits, WhatFollowsAClosingElementThatComesFirstIsShown)
{
    EXPECT_TRUE(Shows(L"</user><user>" + secret + L"</user>"));
    EXPECT_EQ(Messages(), std::vector{L"</user><user>****</user><user>" + secret + L"</user>"});
}

TEST_F(RedactionLimits, OfElementsThatOverlapTheEndIsShown)
{
    EXPECT_TRUE(Shows(L"<user>a<password>b</user>" + secret + L"</password>"));
}

TEST_F(RedactionLimits, AnElementWithAttributesOrBlanksOrAPrefixIsShown)
{
    for (auto const* const opening : {L"<password type=\"text\">", L"<password >", L"<p:password>"})
    {
        EXPECT_TRUE(Shows(opening + secret + L"</password>"));
    }
}

TEST_F(RedactionLimits, CredentialsOutsideElementsAreShown)
{
    for (auto const* const before : {L"password=", L"{\"password\":\"", L"https://user:", L"Bearer ", L"<secret>"})
    {
        EXPECT_TRUE(Shows(before + secret));
    }
}

TEST_F(RedactionLimits, AChannelUriWithAnOpaqueTokenIsShown)
{
    EXPECT_TRUE(Shows(L"Channel URI: https://db5.notify.example.com/?token=AwYAAAB" + secret));
}

TEST_F(RedactionLimits, ATokenWhosePayloadTheCutTakesAwayIsShownUpToThere)
{
    auto const header = L"eyJ" + secret;
    auto const message = std::wstring(4'094 - header.size() - 3, L'x') + header + L".eyJhbGciOiJub25lIn0";
    LogWide(Opened(), LogLevel::Info, L"%ls", message.c_str());
    EXPECT_EQ(Messages(), std::vector{message.substr(0, 4'094)});
    EXPECT_TRUE(AnyFileHolds(secret));
}

TEST_F(RedactionLimits, ATokenInTwoMessagesIsShown)
{
    LogAt(Opened(), 0, L"eyJhbGciOiJub25lIn0");
    LogAt(target, 0, (L".eyJ" + secret).c_str());
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"eyJhbGciOiJub25lIn0", L".eyJ" + secret}));
}

TEST_F(RedactionLimits, AHarmlessMessageThatLooksLikeATokenIsSkipped)
{
    LogAt(Opened(), 0, L"the texts eyJ and .eyJ begin tokens");
    EXPECT_EQ(Messages(), std::vector{notice});
}

TEST_F(RedactionLimits, TheOtherFieldsOfALineAreShown)
{
    Opened().Log(LogLevel::Info, token.c_str(), token.c_str(), token.c_str(), token.c_str(), token.c_str(),
                 element.c_str(), L"m", nullptr, 0, true);
    auto const lines = Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(std::vector(lines[0].begin() + 1, lines[0].begin() + 8),
              (std::vector<std::wstring>{L"[INFO]", token, token, token, token, token, element}));
}
