#include "tests/support/Files.h"
#include "tests/unit/simulator/PlatformFixture.h"

#include <algorithm>
#include <map>
#include <thread>
#include <windows.h>

namespace
{

constexpr auto accessDenied = static_cast<std::int32_t>(0x80070005);
constexpr auto unspecifiedFailure = static_cast<std::int32_t>(0x80004005);
constexpr auto fileNotFound = static_cast<std::int32_t>(0x80070002);

std::map<std::wstring, std::wstring> EnvironmentOf(sim::ProcessRequest const& request)
{
    return {request.environment.begin(), request.environment.end()};
}

sim::SetFault ExitFault(std::uint32_t times = sim::Fault::always)
{
    return {{L"CoreApplication.Exit", sim::FaultKind::Now, 0x80004005, times}};
}

class PlatformTest : public PlatformFixture
{
  protected:
    static std::string Without(std::string const& part)
    {
        auto text = manifest;
        text.erase(text.find(part), part.size());
        return text;
    }

    // A launched app that has connected.
    PeerPointer RunningApp()
    {
        Register();
        Launch();
        return Connect(0);
    }

    std::int32_t LaunchedDesktop(sim::LaunchDesktop const& launch) { return Ask(RunningApp(), launch).result; }

    static sim::Activate Launched(std::uint32_t id, std::wstring const& arguments)
    {
        return {{id, sim::UserLaunch{arguments}}};
    }

    static sim::Activate Opened(std::uint32_t id, std::wstring const& uri) { return {{id, sim::ProtocolLaunch{uri}}}; }
};

// What it is sent cannot be sent.
class BrokenPeer : public FakePeer
{
  public:
    void Send(sim::ToProcess const&) override { throw std::runtime_error("broken"); }
};

} // namespace

TEST_F(PlatformTest, StartsTheAppWithItsCommandLineFolderAndEnvironment)
{
    Register();
    EXPECT_EQ(Ask(sim::LaunchApp{L"some arguments"}), L"process 100, activations waiting: 1");
    ASSERT_EQ(m_processes->started.size(), 1u);
    auto const& request = m_processes->started[0];
    auto const executable = m_layout + L"\\App.exe";
    auto const temporary = m_device.Home() + L"\\Packages\\" + family + L"\\AC\\Temp";
    EXPECT_EQ(request.executable, executable);
    EXPECT_EQ(request.commandLine.find(L"\"" + executable + L"\" -ServerName:App.AppX"), 0u);
    EXPECT_EQ(request.folder, m_layout);
    auto const environment = EnvironmentOf(request);
    EXPECT_EQ(environment.at(L"TEMP"), temporary);
    EXPECT_EQ(environment.at(L"TMP"), temporary);
    EXPECT_EQ(environment.at(L"LOCALAPPDATA"), m_device.Home());
    EXPECT_EQ(environment.at(L"VELMO_SIM_HOME"), m_device.Home());
    EXPECT_NE(GetFileAttributesW(temporary.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(PlatformTest, KeepsActivationsUntilTheProcessConnectsAndGivesThemInOrder)
{
    Register();
    Launch(L"one");
    Ask(sim::OpenUri{L"a-protocol:two"});
    auto const app = Connect(0);
    Launch(L"three");
    EXPECT_EQ(m_processes->started.size(), 1u);
    EXPECT_EQ(app->received, Sent(Welcome(), Launched(1, L"one"), Opened(2, L"a-protocol:two"), Launched(3, L"three")));
}

TEST_F(PlatformTest, StartsOneProcessForTwoActivationsAtTheSameInstant)
{
    Register();
    auto const launch = [&] { m_platform->Received(m_commandLine, sim::Request{1, sim::LaunchApp{}}); };
    std::thread other(launch);
    launch();
    other.join();
    Run();
    EXPECT_EQ(m_processes->started.size(), 1u);
    EXPECT_EQ(Connect(0)->received.size(), 3u);
}

TEST_F(PlatformTest, TellsAnExitFromACrash)
{
    auto const first = RunningApp();
    Take(first, 1);
    Exit(0, first);
    Launch();
    auto const second = Connect(1);
    Take(second, 2);
    Close(second);
    End(1, 0xC0000005);
    EXPECT_EQ(EventKinds(), (Kinds{L"package-registered", L"app-started", L"activated", L"exit-announced",
                                   L"app-exited", L"app-started", L"activated", L"app-crashed"}));
    EXPECT_EQ(LastEvent().Detail(L"code"), L"0xC0000005");
}

TEST_F(PlatformTest, TellsWhereTheAppSaysThatItCrashedOnce)
{
    Register();
    Texts texts;
    for (auto const* places : {"A.exe+0x00001000 A.exe+0x00002000 B.dll+0x00000010", "A.exe+0x00001000", ""})
    {
        SwitchOn(); // its processes have the ids of the former ones
        Launch();
        Close(Connect(0));
        if (*places)
        {
            test::WriteBytes(m_device.CrashFile(100), places);
        }
        End(0, 0xC0000005);
        auto const events = Events();
        texts.push_back(std::ranges::find(events.rbegin(), events.rend(), L"app-crashed", &sim::Event::kind)->Text());
    }
    EXPECT_EQ(texts[0], L"app-crashed pid=100 code=0xC0000005 at=A.exe+0x00001000 "
                        L"callers='A.exe+0x00002000 B.dll+0x00000010'");
    EXPECT_EQ(texts[1], L"app-crashed pid=100 code=0xC0000005 at=A.exe+0x00001000 callers=''");
    EXPECT_EQ(texts[2], L"app-crashed pid=100 code=0xC0000005");
}

TEST_F(PlatformTest, HearsAProcessOutBeforeItJudgesItsEnd)
{
    auto const app = RunningApp();
    End(0, 0); // its end is seen before its last words
    Take(app, 1);
    Say(app, sim::ExitAnnounced{});
    Close(app);
    EXPECT_EQ(LastEvent().kind, L"app-exited");
}

TEST_F(PlatformTest, NotesAnAnnouncedExitOnce)
{
    auto const app = RunningApp();
    Take(app, 1);
    Reports();
    Say(app, sim::ExitAnnounced{});
    Say(app, sim::ExitAnnounced{});
    EXPECT_EQ(Reports(), Texts{L"exit-announced"});
}

TEST_F(PlatformTest, StartsANewProcessForWhatCameWhileTheOldOneEnded)
{
    auto const first = RunningApp();
    Take(first, 1);
    Say(first, sim::ExitAnnounced{});
    Ask(sim::OpenUri{L"a-protocol:late"});
    EXPECT_EQ(ActivationsOf(*first).size(), 1u); // it gets no more
    Close(first);
    EXPECT_EQ(m_processes->started.size(), 1u);
    End(0, 0);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received, Sent(Welcome(), Opened(2, L"a-protocol:late")));
}

TEST_F(PlatformTest, GivesWhatACrashedProcessDidNotTakeToTheNextOne)
{
    Register();
    Launch();
    Ask(sim::OpenUri{L"a-protocol:second"});
    auto const first = Connect(0);
    Take(first, 1);
    Close(first);
    End(0, 3);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received, Sent(Welcome(), Opened(2, L"a-protocol:second")));
}

TEST_F(PlatformTest, LosesWhatNoNextProcessStartsFor)
{
    Register();
    Launch();
    Ask(sim::OpenUri{L"a-protocol:second"});
    auto const app = Connect(0);
    Take(app, 1);
    Close(app);
    m_processes->error = ERROR_FILE_NOT_FOUND;
    Reports();
    End(0, 3);
    EXPECT_EQ(Reports(), (Texts{L"app-crashed pid=100 code=3", L"app-start-failed error=2",
                                L"activation-lost kind=protocol uri=a-protocol:second"}));
    EXPECT_NE(Ask(sim::ShowStatus{}).find(L"app       not running\n"), std::wstring::npos);
}

TEST_F(PlatformTest, DoesNotStartABrokenAppAgainAndAgain)
{
    Register();
    Launch();
    Launch();
    End(0, 3); // it never connected
    EXPECT_EQ(m_processes->started.size(), 1u);
    EXPECT_EQ(EventKinds(),
              (Kinds{L"package-registered", L"app-started", L"app-crashed", L"activation-lost", L"activation-lost"}));
}

TEST_F(PlatformTest, SaysThatTheAppDoesNotStart)
{
    Register();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}).find(L"cannot start " + m_layout + L"\\App.exe: "), 0u);
    EXPECT_EQ(EventKinds(), (Kinds{L"package-registered", L"app-start-failed", L"activation-lost"}));
    m_processes->error = 0;
    EXPECT_EQ(Ask(sim::LaunchApp{}), L"process 100, activations waiting: 1");
}

TEST_F(PlatformTest, RefusesAProcessThatItDidNotStart)
{
    Register();
    Launch();
    EXPECT_EQ(Connect(7)->received, Sent(sim::NotTheApp{}));
    auto const app = Connect(0);
    EXPECT_EQ(Connect(0)->received, Sent(sim::NotTheApp{})); // it has connected already
}

TEST_F(PlatformTest, ExpectsAProcessThatItDidNotStart)
{
    Register();
    m_platform->ExpectApp(7);
    auto const app = std::make_shared<FakePeer>();
    Say(app, sim::Hello{7});
    Launch(L"one");
    EXPECT_EQ(app->received, Sent(Welcome(), Launched(1, L"one")));
    EXPECT_TRUE(m_processes->started.empty());
    Close(app);
    m_platform->ProcessEnded(7, 3);
    EXPECT_EQ(LastEvent().kind, L"activation-lost");
}

TEST_F(PlatformTest, RegistersAPackageThatItIsGiven)
{
    auto package = sim::OpenPackage(m_layout);
    package.manifest.version = L"1.2.3.4";
    m_platform->Register(std::move(package));
    EXPECT_EQ(LastEvent().Text(), L"package-registered family=A.Package_m7dy57p66fpam version=1.2.3.4");
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}), L"");
}

TEST_F(PlatformTest, ListensToTheAppAlone)
{
    auto const app = RunningApp();
    Ask(ExitFault());
    auto const stranger = std::make_shared<FakePeer>();
    Reports();
    Take(stranger, 1);
    Say(stranger, sim::ExitAnnounced{});
    Say(stranger, sim::FaultTriggered{L"CoreApplication.Exit"});
    Say(stranger, sim::Report{L"kind", {}});
    Close(stranger);
    EXPECT_EQ(Reports(), Texts{});
    EXPECT_TRUE(stranger->received.empty());
}

TEST_F(PlatformTest, NotesWhatTheAppReports)
{
    auto const app = RunningApp();
    Say(app, sim::Report{L"a-kind", {L"one=two words"}});
    EXPECT_EQ(LastEvent().Text(), L"a-kind one='two words'");
}

TEST_F(PlatformTest, StartsTheDesktopComponentWithItsGroupsParameters)
{
    EXPECT_EQ(LaunchedDesktop({L"", L"Group"}), 0);
    ASSERT_EQ(m_processes->started.size(), 2u);
    auto const& request = m_processes->started[1];
    auto const executable = m_layout + L"\\Sub\\Desktop.exe";
    EXPECT_EQ(request.executable, executable);
    EXPECT_EQ(request.commandLine, L"\"" + executable + L"\" /InvokerPRAID: App /of the group");
    EXPECT_EQ(EnvironmentOf(request).at(L"TMP"), m_device.Home() + L"\\Temp");
    End(1, 4);
    EXPECT_EQ(LastEvent().Text(), L"desktop-exited pid=101 code=4");
}

TEST_F(PlatformTest, StartsTheDesktopComponentWithoutAGroup)
{
    EXPECT_EQ(LaunchedDesktop({L"App", std::nullopt}), 0);
    EXPECT_EQ(m_processes->started[1].commandLine, L"\"" + m_layout + L"\\Sub\\Desktop.exe\" /InvokerPRAID: App");
}

TEST_F(PlatformTest, StartsAnotherDesktopProcessAtEachLaunch)
{
    auto const app = RunningApp();
    EXPECT_EQ(Ask(app, sim::LaunchDesktop{L"", L"Group"}).result, 0);
    EXPECT_EQ(Ask(app, sim::LaunchDesktop{L"", L"Group"}).result, 0);
    EXPECT_EQ(m_processes->started.size(), 3u);
}

TEST_F(PlatformTest, KillsTheApp)
{
    EXPECT_EQ(RefusalOf(sim::KillApp{}), L"the app is not running");
    Register();
    Launch();
    Ask(sim::KillApp{});
    EXPECT_EQ(m_processes->killed, std::vector<unsigned long>{100});
    EXPECT_EQ(m_processes->killCode, 1u);
}

TEST_F(PlatformTest, DoesNotLaunchAnUnknownGroup)
{
    EXPECT_EQ(LaunchedDesktop({L"", L"group"}), elementNotFound);
    EXPECT_EQ(LastEvent().Text(), L"desktop-not-started group=group result=0x80070490");
}

TEST_F(PlatformTest, DoesNotLaunchForAnotherApp)
{
    EXPECT_EQ(LaunchedDesktop({L"Other", L"Group"}), elementNotFound);
}

TEST_F(PlatformTest, DoesNotLaunchForADesktopProgram)
{
    RunningApp();
    EXPECT_EQ(Ask(std::make_shared<FakePeer>(), sim::LaunchDesktop{L"", L"Group"}).result, elementNotFound);
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformTest, DoesNotLaunchWithoutTheExtension)
{
    auto const start = manifest.find("<desktop:Extension");
    WriteManifest(Without(manifest.substr(start, manifest.find("</desktop:Extension>") + 20 - start)));
    EXPECT_EQ(LaunchedDesktop({L"", L"Group"}), elementNotFound);
}

TEST_F(PlatformTest, DoesNotLaunchWithoutTheCapability)
{
    WriteManifest(Without("<rescap:Capability Name=\"runFullTrust\"/>"));
    EXPECT_EQ(LaunchedDesktop({L"", L"Group"}), accessDenied);
}

TEST_F(PlatformTest, PassesOnWhyTheDesktopComponentDoesNotStart)
{
    auto const app = RunningApp();
    m_processes->error = ERROR_FILE_NOT_FOUND;
    EXPECT_EQ(Ask(app, sim::LaunchDesktop{L"", L"Group"}).result, fileNotFound);
}

TEST_F(PlatformTest, NotesThatTheDeviceFailsToLaunch)
{
    test::WriteBytes(m_device.DesktopTemporaryFolder(), "no folder");
    EXPECT_EQ(LaunchedDesktop({L"", L"Group"}), unspecifiedFailure);
    EXPECT_EQ(LastEvent().Text().find(L"device-failed reason='LaunchDesktop: "), 0u);
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformTest, TellsANewProcessItsFaultsBeforeItsActivations)
{
    Register();
    Ask(ExitFault(2));
    Launch();
    auto const app = Connect(0);
    EXPECT_EQ(app->received, Sent(sim::FaultSet{ExitFault(2).fault}, Welcome(), Launched(1, L"")));
    app->received.clear();
    Ask(ExitFault(3));
    Ask(sim::ClearFaults{});
    EXPECT_EQ(app->received, Sent(sim::FaultSet{ExitFault(3).fault}, sim::FaultsCleared{}));
}

TEST_F(PlatformTest, CountsTriggeredFaults)
{
    Register();
    Ask(ExitFault(1));
    Launch();
    auto const first = Connect(0);
    Say(first, sim::FaultTriggered{L"CoreApplication.Exit"});
    EXPECT_EQ(LastEvent().Text(), L"fault call=CoreApplication.Exit kind=now result=0x80004005 times=1");
    Close(first);
    End(0, 3);
    Launch();
    EXPECT_EQ(Connect(1)->received.front(), sim::ToProcess(Welcome()));
}

TEST_F(PlatformTest, GivesFollowersThePastAndThePresent)
{
    Register();
    auto const follower = std::make_shared<FakePeer>();
    Say(follower, sim::Follow{});
    ASSERT_EQ(follower->received.size(), 1u);
    Launch();
    ASSERT_EQ(follower->received.size(), 2u);
    auto const events = Events();
    EXPECT_EQ(follower->received, Sent(sim::EventHappened{events[0]}, sim::EventHappened{events[1]}));
    EXPECT_EQ(EventKinds(), (Kinds{L"package-registered", L"app-started"}));
    Close(follower);
    End(0, 0);
    EXPECT_EQ(follower->received.size(), 2u);
}

TEST_F(PlatformTest, KnowsItsPackageAgainAfterARestart)
{
    Register();
    SwitchOn();
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}), L"");
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformTest, NotesAPackageThatIsBrokenAfterARestart)
{
    Register();
    DeleteFileW((m_layout + L"\\App.exe").c_str());
    SwitchOn();
    EXPECT_EQ(LastEvent().kind, L"package-lost");
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}), L"no package is registered: sim register FOLDER comes first");
}

TEST_F(PlatformTest, RemovesThePackageWithItsData)
{
    Register();
    Launch();
    End(0, 0);
    EXPECT_EQ(Ask(sim::UnregisterPackage{}), family);
    EXPECT_EQ(GetFileAttributesW(m_device.PackageDataFolder(family).c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}), L"no package is registered: sim register FOLDER comes first");
}

TEST_F(PlatformTest, LeavesThePackageAloneWhileTheAppRuns)
{
    Register();
    Launch();
    auto const running = L"the app is running; wait for its end, or end it with sim kill";
    EXPECT_EQ(RefusalOf(sim::UnregisterPackage{}), running);
    EXPECT_EQ(RefusalOf(sim::RegisterPackage{m_layout}), running);
}

TEST_F(PlatformTest, RefusesAFolderWithoutAPackage)
{
    EXPECT_NE(RefusalOf(sim::RegisterPackage{m_folder / L"missing"}), L"");
    EXPECT_EQ(EventKinds(), Kinds{});
}

TEST_F(PlatformTest, OpensOnlyDeclaredProtocols)
{
    Register();
    EXPECT_EQ(RefusalOf(sim::OpenUri{L"other:x"}),
              L"other:x is for none of the protocols that the package declares: a-protocol:");
    EXPECT_NE(RefusalOf(sim::OpenUri{L"a-protocol"}), L"");
    EXPECT_TRUE(m_processes->started.empty());
    Ask(sim::OpenUri{L"A-Protocol:x"});
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformTest, SuspendsARunningAppInTheOrderOfItsActivations)
{
    Register();
    EXPECT_EQ(RefusalOf(sim::SuspendApp{}), L"the app is not running");
    Launch();
    auto const app = Connect(0);
    Ask(sim::SuspendApp{});
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::Activate{{2, sim::Suspension{}}}));
    Take(app, 1);
    Take(app, 2);
    EXPECT_EQ(LastEvent().kind, L"suspending");
}

TEST_F(PlatformTest, DoesNotStartAProcessToSuspendIt)
{
    auto const app = RunningApp();
    Take(app, 1);
    Ask(sim::SuspendApp{});
    Exit(0, app);
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformTest, StartsTheAppForItsPageAndTellsItWhich)
{
    EXPECT_NE(RefusalOf(sim::RequestPage{L"A.Page"}), L""); // no package
    Register();
    Ask(sim::RequestPage{L"A.Page"});
    auto const app = Connect(0);
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::Activate{{1, sim::PageRequest{L"A.Page"}}}));
    Take(app, 1);
    EXPECT_EQ(LastEvent().Text(), L"page-requested class=A.Page");
}

TEST_F(PlatformTest, NotesWhatFailsOutsideARequestAndGoesOn)
{
    m_platform->ExpectApp(7); // without a package
    Say(m_commandLine, sim::Hello{7});
    EXPECT_EQ(Reports(),
              Texts{L"device-failed reason='Hello: no package is registered: sim register FOLDER comes first'"});
    Say(std::make_shared<BrokenPeer>(), sim::Hello{8});
    EXPECT_EQ(Reports(), Texts{L"device-failed reason='Hello: broken'"});
    EXPECT_NE(Ask(sim::ShowStatus{}), L"");
}

TEST_F(PlatformTest, RefusesARequestThatFailsInAnyWay)
{
    Register();
    m_processes->exception = "broken";
    EXPECT_EQ(RefusalOf(sim::LaunchApp{}), L"broken");
}

TEST_F(PlatformTest, EndsWhatRunsWhenTheDeviceIsSwitchedOff)
{
    EXPECT_EQ(LaunchedDesktop({L"", L"Group"}), 0);
    EXPECT_EQ(Ask(sim::ShowProcess{}), std::to_wstring(GetCurrentProcessId()));
    EXPECT_FALSE(m_isSwitchedOff);
    Say(m_commandLine, sim::SwitchOff{});
    EXPECT_TRUE(m_isSwitchedOff);
    m_platform->SwitchOff();
    EXPECT_EQ(m_processes->killed, (std::vector<unsigned long>{100, 101}));
}

TEST_F(PlatformTest, SaysWhatTheDeviceHolds)
{
    Register();
    Ask(ExitFault());
    Launch();
    auto const clock = sim::Clock::Text(m_time.Utc());
    EXPECT_EQ(Ask(sim::ShowStatus{}), L"device    " + m_device.Home() + L"\npackage   " + family + L" 1.0.0.0 in " +
                                          m_layout +
                                          L"\napp       process 100, activations waiting: 1"
                                          L"\ndesktop   processes running: 0"
                                          L"\nclock     " +
                                          clock +
                                          L"\nchannel   none"
                                          L"\ntasks     registered: 0, running: 0"
                                          L"\nservice   connections: 0"
                                          L"\nfault     CoreApplication.Exit now 0x80004005");
}
