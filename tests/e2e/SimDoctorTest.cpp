#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "tests/e2e/SimulatorDevice.h"
#include "tests/support/MakeLink.h"

namespace
{

// sim doctor, on a device with the real app.
class SimDoctor : public test::SimulatorDevice
{
  protected:
    // The lines with a result.
    std::string Look(DWORD exitCode, std::wstring const& options = L"")
    {
        auto const outcome = Run(L"doctor" + options);
        EXPECT_EQ(outcome.exitCode, exitCode) << sim::ToUtf8(outcome.output);
        return sim::ToUtf8(outcome.output);
    }

    // Asks for the events until this one is among them.
    void Await(std::wstring const& event)
    {
        constexpr ULONGLONG limitMilliseconds = 60'000;
        auto const end = GetTickCount64() + limitMilliseconds;
        while (Run(L"events").output.find(event) == std::wstring::npos)
        {
            ASSERT_LT(GetTickCount64(), end) << sim::ToUtf8(event);
        }
    }

    std::wstring const m_suiteFolder = m_device + L"\\Packages\\" PACKAGE_FAMILY L"\\AC\\Temp\\Tessaline";
    std::wstring const m_logFolder = m_suiteFolder + L"\\HOV";
};

} // namespace

TEST_F(SimDoctor, FindsNothingWrongAfterAPush)
{
    Run(L"register");
    RunHelper(L"register");
    Run(L"push hello");
    Await(L"task-completed instance=2");
    auto const said = Look(0);
    EXPECT_TRUE(said.starts_with("device  " + sim::UnixPath(m_device) + "\nlog     " + sim::UnixPath(m_device) + "/"))
        << said;
    EXPECT_NE(said.find("/Tessaline/HOV/KZEB.log\n"), std::string::npos) << said;
    for (auto const* text : {"worked          package            Velmo.NotificationClient_",
                             "worked          channel            The channel is open for another ",
                             "worked          URI stored         The URI in the app's settings is that of the open",
                             "worked          tasks registered   Both background tasks are registered, each once.",
                             "worked          push or timer      Wake 1, a push at ",
                             "worked          start-up           The log is there and can be written: ",
                             "worked          start-up           The log's mutex is free",
                             "worked          desktop component  The desktop component is there: ",
                             "worked          desktop component  Wake 1, a push at ",
                             "worked          task completed     Wake 1, a push at "})
    {
        EXPECT_NE(said.find(text), std::string::npos) << text << "\nis not in\n" << said;
    }
    EXPECT_EQ(said.find("\nfailed "), std::string::npos) << said;
    EXPECT_NE(said.find("\nBy the log: Nothing failed.\n"), std::string::npos) << said;
}

TEST_F(SimDoctor, FindsWhatAPushWaitsFor)
{
    Run(L"register");
    RunHelper(L"register");
    Run(L"access denied");
    Run(L"revoke-channel");
    Run(L"push lost");
    auto const said = Look(3);
    EXPECT_NE(said.find("failed          channel            The app has no open channel"), std::string::npos) << said;
    EXPECT_NE(said.find("failed          URI stored         The URI in the app's settings is not that of"),
              std::string::npos)
        << said;
    EXPECT_NE(said.find("Background access is denied"), std::string::npos) << said;
    EXPECT_NE(said.find("was lost: the app has no open channel."), std::string::npos) << said;
}

TEST_F(SimDoctor, CannotTellWhatIsUnderWay)
{
    Run(L"register");
    RunHelper(L"register");
    Run(L"fault FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync held");
    Run(L"push hello");
    Await(L"activated kind=background-task name=PushNotificationBGTask");
    auto const said = Look(4);
    EXPECT_NE(said.find("cannot be told  task completed     Wake 1, a push at "), std::string::npos) << said;
    EXPECT_EQ(said.substr(0, said.find("\nBy the log: ")).find("\nfailed "), std::string::npos) << said;
    Run(L"fault clear");
    Await(L"task-completed instance=2");
    Look(0);
}

TEST_F(SimDoctor, FindsNoDesktopComponent)
{
    auto const package = m_folder / L"package";
    sim::CopyFolder(PACKAGE, package);
    sim::Remove(package + L"\\HOV\\Tessaline.exe");
    Run(L"register " + package);
    RunHelper(L"register");
    auto const said = Look(3);
    EXPECT_NE(said.find("failed          desktop component  The desktop component is not there: " +
                        sim::ToUtf8(package) + "\\HOV\\Tessaline.exe.\n"),
              std::string::npos)
        << said;
    EXPECT_EQ(said.find("\nworked          desktop component"), std::string::npos) << said;
}

TEST_F(SimDoctor, FindsALinkInTheLogsPath)
{
    Run(L"register");
    sim::MakeFolder(m_suiteFolder);
    sim::MakeFolder(m_folder / L"elsewhere");
    test::MakeLink(m_logFolder, m_folder / L"elsewhere");
    RunHelper(L"register");
    auto const said = Look(3);
    EXPECT_NE(said.find("failed          start-up           A link is in the log's path: " + sim::ToUtf8(m_logFolder) +
                        ".\n"),
              std::string::npos)
        << said;
}

TEST_F(SimDoctor, TellsALogThatIsMissingFromOneThatNeverBegan)
{
    auto const missing = "start-up           There is no folder for the log: " + sim::ToUtf8(m_logFolder) + ".\n";
    Run(L"register");
    auto const before = Look(3); // nothing else was set up
    EXPECT_NE(before.find("not seen        " + missing), std::string::npos) << before;
    RunHelper(L"register");
    Look(0);
    Run(L"kill");
    sim::Remove(m_logFolder);
    auto const after = Look(3);
    EXPECT_NE(after.find("failed          " + missing), std::string::npos) << after;
}

TEST_F(SimDoctor, HasAnObjectForEachFinding)
{
    auto const device = R"({"device":")" + sim::UnixPath(m_device) + '"';
    auto const said = Look(3, L" --json");
    EXPECT_TRUE(
        said.starts_with(device + "}\n" + R"({"stage":"package","result":"failed","what":"No package is registered)"))
        << said;
    Run(L"register");
    auto const registered = Look(3, L" --json");
    EXPECT_TRUE(registered.starts_with(device + R"(,"log":")" + sim::UnixPath(m_device) + "/")) << registered;
    EXPECT_NE(registered.find("/Tessaline/HOV/KZEB.log\"}\n{\"stage\":\"package\",\"result\":\"worked\""),
              std::string::npos)
        << registered;
    EXPECT_EQ(Run(L"doctor --yaml").exitCode, 2u);
}
