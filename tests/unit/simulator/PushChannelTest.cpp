#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

constexpr std::int64_t day = 24 * 60;

class Channels : public ServicesFixture
{
  protected:
    sim::Message Create() { return Ask(m_app, {L"create-channel"}); }

    static bool Has(std::wstring const& text, std::wstring_view part) { return text.find(part) != text.npos; }
};

} // namespace

TEST_F(Channels, HaveAUriThatIsEscaped)
{
    auto const channel = Create();
    ASSERT_EQ(channel.size(), 4u);
    EXPECT_EQ(channel[1], L"0x00000000");
    auto const& uri = channel[2];
    EXPECT_EQ(uri.find(L"https://"), 0u);
    EXPECT_TRUE(Has(uri, L".notify.windows.com/?token="));
    EXPECT_TRUE(Has(uri, L"%2b") && Has(uri, L"%2f") && Has(uri, L"%3d"));
    EXPECT_EQ(uri.find_first_of(L"+ "), uri.npos);
    EXPECT_GE(uri.size(), 150u);
    EXPECT_LE(uri.size(), 300u);
}

TEST_F(Channels, StayTheSameForThirtyDays)
{
    auto const first = Create();
    AdvanceClock(30 * day - 1);
    EXPECT_EQ(Create(), first);
    Restart();
    EXPECT_EQ(Create(), first);
}

TEST_F(Channels, ExpireAfterThirtyDays)
{
    auto const first = Create();
    Reports();
    AdvanceClock(30 * day);
    EXPECT_EQ(Reports().back(), L"channel-expired");
    auto const second = Create();
    EXPECT_NE(second[2], first[2]);
    EXPECT_GT(std::stoll(second[3]), std::stoll(first[3]));
}

TEST_F(Channels, AreRevoked)
{
    auto const first = Create();
    Reports();
    Do([](sim::Services& services) { services.RevokeChannel(); });
    Do([](sim::Services& services) { services.RevokeChannel(); });
    EXPECT_EQ(Reports(), (std::vector<std::wstring>{L"channel-revoked"}));
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_NE(Create()[2], first[2]);
}

TEST_F(Channels, AreForTheAppAlone)
{
    EXPECT_EQ(Ask(m_caller, {L"create-channel"}), (sim::Message{L"channel", L"0x80070490"}));
}

TEST_F(Channels, ExpireByTheDevicesClock)
{
    auto const expiry = std::stoll(Create()[3]);
    auto const now = sim::VirtualClock(m_device.ClockFile()).Now();
    EXPECT_LE(expiry, now + 30 * day * sim::VirtualClock::minute);
    EXPECT_GT(expiry, now + (30 * day - 1) * sim::VirtualClock::minute);
}

TEST_F(Channels, AreShownToPeople)
{
    auto const status = [&] { return Do([](sim::Services& services) { return services.Status(); }); };
    EXPECT_TRUE(Has(status(), L"channel   none"));
    Create();
    EXPECT_TRUE(Has(status(), L"channel   open, expires "));
}
