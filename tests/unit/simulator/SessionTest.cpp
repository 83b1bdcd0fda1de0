#include "simulator/base/Files.h"
#include "tests/support/Files.h"
#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

// What lasts from when the device is switched on until it is switched off, also when the platform is killed meanwhile.
class SessionTest : public ServicesFixture
{
  protected:
    void SetFault(std::vector<std::wstring> const& words) { Ask(sim::SetFault{sim::ParseFault(words)}); }

    bool HasFault(std::wstring const& words)
    {
        return Ask(sim::ShowStatus{}).find(L"\nfault     " + words) != std::wstring::npos;
    }

    std::wstring const m_exit = L"CoreApplication.Exit";
};

} // namespace

TEST_F(SessionTest, IsTakenOverFromAKilledPlatform)
{
    auto const connection = Open(m_caller);
    RegisterTimer(L"Daily", day);
    AdvanceClock(day);
    SetFault({m_exit, L"now", L"0x80004005", L"2"});
    Say(m_app, sim::FaultTriggered{m_exit});
    Reports();
    KillPlatform();
    EXPECT_EQ(Reports(), Texts{L"broker-lost last-instance=2 faults=1"});
    EXPECT_TRUE(HasFault(m_exit + L" now 0x80004005 1"));
    m_activations.clear();
    EXPECT_EQ(Open(m_caller), connection + 1);
    EXPECT_EQ(InstanceOf(0), 3u);
    AdvanceClock(day);
    EXPECT_EQ(TaskAt(1).wake, 2u);
}

TEST_F(SessionTest, IsTakenOverAgain)
{
    Open(m_caller);
    KillPlatform();
    KillPlatform();
    EXPECT_EQ(LastEvent().Text(), L"broker-lost last-instance=1 faults=0");
}

TEST_F(SessionTest, EndsWhenTheDeviceIsSwitchedOff)
{
    Open(m_caller);
    SetFault({m_exit, L"now", L"0x80004005"});
    Reports();
    Restart();
    EXPECT_EQ(Reports(), Texts{});
    EXPECT_FALSE(HasFault(m_exit));
    KillPlatform();
    EXPECT_EQ(Reports(), Texts{L"broker-lost last-instance=0 faults=0"}); // nothing of the session before
}

TEST_F(SessionTest, IsOverForWhatThePlatformHearsAfterItsEnd)
{
    SetFault({m_exit, L"now", L"0x80004005", L"2"});
    m_platform->SwitchOff();
    EXPECT_FALSE(sim::FileExists(m_device.SessionFile()));
    Say(m_app, sim::FaultTriggered{m_exit});
    EXPECT_FALSE(sim::FileExists(m_device.SessionFile()));
}

TEST_F(SessionTest, ForgetsFaultsThatAreCleared)
{
    SetFault({m_exit, L"now", L"0x80004005"});
    Ask(sim::ClearFaults{});
    KillPlatform();
    EXPECT_EQ(LastEvent().Text(), L"broker-lost last-instance=0 faults=0");
}

TEST_F(SessionTest, IsTakenOverWithoutWhatMakesNoSense)
{
    test::WriteBytes(m_device.SessionFile(), "since 0\r\nfault CoreApplication.Exit later\r\nfault "
                                             "CoreApplication.Exit now 0x80004005\r\n");
    KillPlatform();
    auto const reports = Reports();
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_NE(reports[0].find(L"state-damaged file="), std::wstring::npos);
    EXPECT_EQ(reports[1], L"broker-lost last-instance=0 faults=1");
}
