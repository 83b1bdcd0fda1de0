#include "tests/unit/simulator/ServicesFixture.h"

#include <windows.h>

namespace
{

class PushChannelTest : public ServicesFixture
{
  protected:
    static constexpr std::int64_t lifetime = 30 * day; // minutes

    sim::ChannelCreated Create() { return Ask(m_app, sim::CreateChannel{}); }

    static bool Has(std::wstring const& text, std::wstring_view part) { return text.find(part) != text.npos; }
};

} // namespace

TEST_F(PushChannelTest, HasAUriThatIsEscaped)
{
    auto const channel = Create();
    EXPECT_EQ(channel.result, 0);
    auto const& uri = channel.uri;
    EXPECT_EQ(uri.find(L"https://"), 0u);
    EXPECT_TRUE(Has(uri, L".notify.windows.com/?token="));
    EXPECT_TRUE(Has(uri, L"%2b") && Has(uri, L"%2f") && Has(uri, L"%3d"));
    EXPECT_EQ(uri.find_first_of(L"+ "), uri.npos);
    EXPECT_GE(uri.size(), 150u);
    EXPECT_LE(uri.size(), 300u);
}

TEST_F(PushChannelTest, StaysTheSameForThirtyDays)
{
    auto const first = Create();
    AdvanceClock(lifetime - 1);
    EXPECT_EQ(Create(), first);
    Restart();
    EXPECT_EQ(Create(), first);
}

TEST_F(PushChannelTest, ExpiresAfterThirtyDays)
{
    auto const first = Create();
    Reports();
    AdvanceClock(lifetime);
    EXPECT_EQ(Reports().back(), L"channel-expired");
    auto const second = Create();
    EXPECT_NE(second.uri, first.uri);
    EXPECT_EQ(second.expiry, first.expiry + lifetime * sim::Clock::minute);
}

TEST_F(PushChannelTest, ExpiresWhileTheTimeGoesOn)
{
    AdvanceClock(0);
    auto const first = Create();
    AdvanceClock(lifetime - 1);
    Reports();
    m_time.Advance(60'000);
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_EQ(Reports(), (Texts{L"channel-expired", L"push-lost reason=no-channel"}));
    EXPECT_NE(Create().uri, first.uri);
}

TEST_F(PushChannelTest, IsRevokedOnce)
{
    auto const first = Create();
    Reports();
    Ask(sim::RevokeChannel{});
    Ask(sim::RevokeChannel{});
    EXPECT_EQ(Reports(), (Texts{L"channel-revoked"}));
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_NE(Create().uri, first.uri);
}

TEST_F(PushChannelTest, IsReplacedByOneOfTheCallersChoice)
{
    auto const clock = sim::Clock::Text(m_time.Utc() + lifetime * sim::Clock::minute);
    Create();
    Reports();
    m_platform->ReplaceChannel(L"https://another");
    EXPECT_EQ(Reports(), (Texts{L"channel-revoked", L"channel-created expires='" + clock + L"'"}));
    EXPECT_EQ(Create().uri, L"https://another");
    Restart();
    EXPECT_EQ(Create().uri, L"https://another");
}

TEST_F(PushChannelTest, IsForTheAppAlone)
{
    EXPECT_EQ(Ask(m_caller, sim::CreateChannel{}), sim::ChannelCreated{elementNotFound});
}

TEST_F(PushChannelTest, IsNotOpenedWhenTheDiskDoesNotKeepIt)
{
    ASSERT_TRUE(
        CreateDirectoryW((m_device.ChannelFile(family) + L".new").c_str(), nullptr)); // nothing can be written there
    EXPECT_NE(AskLater(m_app, sim::CreateChannel{}).TakeRefusal(), L"");
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
}

TEST_F(PushChannelTest, ExpiresByTheDevicesClock)
{
    AdvanceClock(5);
    EXPECT_EQ(Create().expiry, m_time.Utc() + (lifetime + 5) * sim::Clock::minute);
}

TEST_F(PushChannelTest, IsShownToPeople)
{
    EXPECT_TRUE(Has(Ask(sim::ShowStatus{}), L"\nchannel   none\n"));
    auto const expiry = Create().expiry;
    EXPECT_TRUE(Has(Ask(sim::ShowStatus{}), L"\nchannel   open, expires " + sim::Clock::Text(expiry) + L"\n"));
}

TEST_F(PushChannelTest, TakesAPushToItsUri)
{
    RegisterPush(L"Push");
    auto const uri = Create().uri;
    EXPECT_EQ(Ask(sim::Push{L"hello", uri}), L"sent");
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(PushChannelTest, IsGoneForAPushToAUriFromBefore)
{
    RegisterPush(L"Push");
    auto const revoked = Create().uri;
    Ask(sim::RevokeChannel{});
    auto const expired = Create().uri;
    AdvanceClock(lifetime);
    Create();
    Restart();
    Reports();
    for (auto const& uri : {revoked, expired})
    {
        EXPECT_EQ(Ask(sim::Push{L"hello", uri}),
                  L"the push service answers 410 Gone: the channel has expired or was revoked");
    }
    EXPECT_EQ(Reports(), Texts(2, L"push-refused status=410"));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(PushChannelTest, IsNotFoundForAPushToAForeignUri)
{
    RegisterPush(L"Push");
    auto const uri = Create().uri;
    Reports();
    for (auto const& foreign : {uri + L"x", std::wstring(L"https://another"), std::wstring()})
    {
        EXPECT_EQ(Ask(sim::Push{L"hello", foreign}),
                  L"the push service answers 404 Not Found: no channel has this URI");
    }
    EXPECT_EQ(Reports(), Texts(3, L"push-refused status=404"));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(PushChannelTest, IsForgottenWithThePackage)
{
    auto const uri = Create().uri;
    Ask(sim::RevokeChannel{});
    ExitApp();
    Ask(sim::UnregisterPackage{});
    Register();
    EXPECT_EQ(Ask(sim::Push{L"hello", uri}), L"the push service answers 404 Not Found: no channel has this URI");
}
