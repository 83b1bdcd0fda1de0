#include "simulator/base/Text.h"
#include "tests/e2e/SimulatorDevice.h"

namespace
{

// The helper as a program: what it says when there is no answer, and its exit codes.
class Helper : public test::SimulatorDevice
{
  protected:
    void ExpectFailure(std::wstring const& arguments, DWORD exitCode, std::wstring const& error)
    {
        auto const outcome = RunHelper(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode);
        EXPECT_EQ(sim::ToUtf8(outcome.output), sim::ToUtf8(L"helper: " + error + L"\n"));
    }
};

} // namespace

TEST_F(Helper, SwitchesTheDeviceOn)
{
    Run(L"register");
    Run(L"stop");
    auto const outcome = RunHelper(L"get-channel-uri");
    EXPECT_EQ(outcome.exitCode, 0u);
    EXPECT_NE(outcome.output.find(L"https://"), std::wstring::npos) << sim::ToUtf8(outcome.output);
}

TEST_F(Helper, SaysThatNoDeviceIsNamed)
{
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", nullptr);
    ExpectFailure(L"get-channel-uri", 4,
                  L"this program has no package; run it inside the package (docs/windows.md). On the simulator "
                  L"VELMO_SIM_HOME names the device's folder (APPMODEL_ERROR_NO_PACKAGE, 0x80073D54)");
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", m_device.c_str());
}

TEST_F(Helper, SaysThatThePackageIsNotInstalled)
{
    Run(L"status");
    ExpectFailure(L"get-channel-uri", 3,
                  L"no connection: the package is not installed; install it (simulator: sim register) "
                  L"(AppServiceConnectionStatus.AppNotInstalled, 1)");
}

TEST_F(Helper, SaysThatTheAppDidNotCompleteARequestInTime)
{
    Run(L"register");
    ExpectFailure(L"send Command=Unknown --timeout 1", 4,
                  L"no answer: the app did not complete the request within 1 s; KZEB.log shows its last step, "
                  L"--timeout waits longer");
}

TEST_F(Helper, SaysThatNoMessageCameInTime)
{
    Run(L"register");
    Run(L"fault AppServiceConnection.SendMessageAsync status 2"); // the app's; it does not notice
    ExpectFailure(L"unregister --timeout 5", 4,
                  L"no message: the app completed the request, but sent none within 5 s; KZEB.log shows its last step, "
                  L"--timeout waits longer");
}

TEST_F(Helper, SaysWhatIsWrongWithACall)
{
    ExpectFailure(L"regster", 2, L"there is no command regster\nhelper help lists the commands");
}
