#include "tests/unit/simulator/BrokerFixture.h"

#include <algorithm>
#include <thread>

namespace
{

using Kinds = std::vector<std::wstring>;

} // namespace

TEST_F(Brokers, StartTheAppAsThePlatformDoes)
{
    Register();
    EXPECT_EQ(Ask({L"launch", L"some arguments"})[0], L"ok");
    ASSERT_EQ(m_processes->started.size(), 1u);
    auto const& request = m_processes->started[0].request;
    auto const executable = m_layout + L"\\App.exe";
    auto const temporary = m_device.Home() + L"\\Packages\\" + family + L"\\AC\\Temp";
    EXPECT_EQ(request.executable, executable);
    EXPECT_EQ(request.commandLine.find(L"\"" + executable + L"\" -ServerName:App.AppX"), 0u);
    EXPECT_EQ(request.folder, m_layout);
    std::map<std::wstring, std::wstring> const environment(request.environment.begin(), request.environment.end());
    EXPECT_EQ(environment.at(L"TEMP"), temporary);
    EXPECT_EQ(environment.at(L"TMP"), temporary);
    EXPECT_EQ(environment.at(L"LOCALAPPDATA"), m_device.Home());
    EXPECT_EQ(environment.at(L"VELMO_SIM_HOME"), m_device.Home());
    EXPECT_NE(GetFileAttributesW(temporary.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Brokers, KeepActivationsUntilTheProcessConnectsAndGiveThemInOrder)
{
    Register();
    Ask({L"launch", L"one"});
    Ask({L"protocol", L"a-protocol:two"});
    auto const app = Connect(0);
    Ask({L"launch", L"three"});
    EXPECT_EQ(m_processes->started.size(), 1u);
    ASSERT_EQ(app->received.size(), 4u);
    EXPECT_EQ(app->received[0], Welcome());
    EXPECT_EQ(app->received[1], (sim::Message{L"activate", L"1", L"launch", L"one"}));
    EXPECT_EQ(app->received[2], (sim::Message{L"activate", L"2", L"protocol", L"a-protocol:two"}));
    EXPECT_EQ(app->received[3], (sim::Message{L"activate", L"3", L"launch", L"three"}));
}

TEST_F(Brokers, StartOneProcessForTwoActivationsAtTheSameInstant)
{
    Register();
    std::thread other([&] { Ask({L"launch"}); });
    Ask({L"launch"});
    other.join();
    EXPECT_EQ(m_processes->started.size(), 1u);
    EXPECT_EQ(Connect(0)->received.size(), 3u);
}

TEST_F(Brokers, TellAnExitFromACrash)
{
    Register();
    Ask({L"launch"});
    auto const first = Connect(0);
    Say(first, {L"taken", L"1"});
    Exit(0, first);
    Ask({L"launch"});
    auto const second = Connect(1);
    Say(second, {L"taken", L"2"});
    m_broker->Closed(second);
    m_processes->End(1, 0xC0000005);
    EXPECT_EQ(Events(), (Kinds{L"package-registered", L"app-started", L"activated", L"exit-announced", L"app-exited",
                               L"app-started", L"activated", L"app-crashed"}));
    EXPECT_EQ(LastEvent().Detail(L"code"), L"0xC0000005");
}

TEST_F(Brokers, TellWhereTheAppSaysThatItCrashedOnce)
{
    Register();
    std::vector<std::wstring> texts;
    for (auto const* places : {"A.exe+0x00001000 A.exe+0x00002000 B.dll+0x00000010", "A.exe+0x00001000", ""})
    {
        NewBroker(); // its processes have the ids of the former one's
        Ask({L"launch"});
        m_broker->Closed(Connect(0));
        if (*places)
        {
            test::WriteBytes(m_device.CrashFile(100), places);
        }
        m_processes->End(0, 0xC0000005);
        auto const events = sim::ReadJournal(m_device.JournalFile());
        texts.push_back(std::ranges::find(events.rbegin(), events.rend(), L"app-crashed", &sim::Event::kind)->Text());
    }
    EXPECT_EQ(texts[0], L"app-crashed pid=100 code=0xC0000005 at=A.exe+0x00001000 "
                        L"callers='A.exe+0x00002000 B.dll+0x00000010'");
    EXPECT_EQ(texts[1], L"app-crashed pid=100 code=0xC0000005 at=A.exe+0x00001000 callers=''");
    EXPECT_EQ(texts[2], L"app-crashed pid=100 code=0xC0000005");
}

TEST_F(Brokers, HearAProcessOutBeforeTheyJudgeItsEnd)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    m_processes->End(0, 0); // its end is seen before its last words
    Say(app, {L"taken", L"1"});
    Say(app, {L"exiting"});
    m_broker->Closed(app);
    EXPECT_EQ(LastEvent().kind, L"app-exited");
}

TEST_F(Brokers, StartANewProcessForWhatCameWhileTheOldOneEnded)
{
    Register();
    Ask({L"launch"});
    auto const first = Connect(0);
    Say(first, {L"taken", L"1"});
    Say(first, {L"exiting"});
    Ask({L"protocol", L"a-protocol:late"});
    EXPECT_EQ(first->received.back()[1], L"1"); // it gets no more
    m_broker->Closed(first);
    EXPECT_EQ(m_processes->started.size(), 1u);
    m_processes->End(0, 0);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received.back(), (sim::Message{L"activate", L"2", L"protocol", L"a-protocol:late"}));
}

TEST_F(Brokers, GiveWhatACrashedProcessDidNotTakeToTheNextOne)
{
    Register();
    Ask({L"launch"});
    Ask({L"protocol", L"a-protocol:second"});
    auto const first = Connect(0);
    Say(first, {L"taken", L"1"});
    m_broker->Closed(first);
    m_processes->End(0, 3);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received.back()[3], L"a-protocol:second");
}

TEST_F(Brokers, DoNotStartABrokenAppAgainAndAgain)
{
    Register();
    Ask({L"launch"});
    Ask({L"launch"});
    m_processes->End(0, 3); // it never connected
    EXPECT_EQ(m_processes->started.size(), 1u);
    EXPECT_EQ(Events(),
              (Kinds{L"package-registered", L"app-started", L"app-crashed", L"activation-lost", L"activation-lost"}));
}

TEST_F(Brokers, SayThatTheAppDoesNotStart)
{
    Register();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    auto const answer = Ask({L"launch"});
    EXPECT_EQ(answer[0], L"error");
    EXPECT_EQ(answer[1].find(L"cannot start " + m_layout + L"\\App.exe: "), 0u);
    EXPECT_EQ(Events(), (Kinds{L"package-registered", L"app-start-failed", L"activation-lost"}));
    m_processes->error = 0;
    EXPECT_EQ(Ask({L"launch"})[0], L"ok");
}

TEST_F(Brokers, RefuseAProcessThatTheyDidNotStart)
{
    Register();
    Ask({L"launch"});
    EXPECT_EQ(Connect(7)->received, std::vector<sim::Message>{{L"refused"}});
    auto const app = Connect(0);
    EXPECT_EQ(Connect(0)->received, std::vector<sim::Message>{{L"refused"}}); // it has connected already
}

TEST_F(Brokers, StartTheDesktopComponentWithItsGroupsParameters)
{
    EXPECT_EQ(Launched({L"", L"Group"}), L"0x00000000");
    ASSERT_EQ(m_processes->started.size(), 2u);
    auto const& request = m_processes->started[1].request;
    auto const executable = m_layout + L"\\Sub\\Desktop.exe";
    EXPECT_EQ(request.executable, executable);
    EXPECT_EQ(request.commandLine, L"\"" + executable + L"\" /InvokerPRAID: App /of the group");
    std::map<std::wstring, std::wstring> const environment(request.environment.begin(), request.environment.end());
    EXPECT_EQ(environment.at(L"TMP"), m_device.Home() + L"\\Temp");
    m_processes->End(1, 4);
    EXPECT_EQ(LastEvent().Text(), L"desktop-exited pid=101 code=4");
}

TEST_F(Brokers, StartTheDesktopComponentWithoutAGroup)
{
    EXPECT_EQ(Launched({L"App"}), L"0x00000000");
    EXPECT_EQ(m_processes->started[1].request.commandLine,
              L"\"" + m_layout + L"\\Sub\\Desktop.exe\" /InvokerPRAID: App");
}

TEST_F(Brokers, StartAnotherDesktopProcessAtEachLaunch)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    Say(app, {L"launch-desktop", L"r1", L"", L"Group"});
    Say(app, {L"launch-desktop", L"r2", L"", L"Group"});
    EXPECT_EQ(m_processes->started.size(), 3u);
}

TEST_F(Brokers, KillTheApp)
{
    EXPECT_EQ(Ask({L"kill"})[0], L"error");
    Register();
    Ask({L"launch"});
    EXPECT_EQ(Ask({L"kill"})[0], L"ok");
    EXPECT_EQ(m_processes->killed, std::vector<unsigned long>{100});
}

TEST_F(Brokers, DoNotLaunchAnUnknownGroup)
{
    EXPECT_EQ(Launched({L"", L"group"}), L"0x80070490");
    EXPECT_EQ(LastEvent().Text(), L"desktop-not-started group=group result=0x80070490");
}

TEST_F(Brokers, DoNotLaunchForAnotherApp)
{
    EXPECT_EQ(Launched({L"Other", L"Group"}), L"0x80070490");
}

TEST_F(Brokers, DoNotLaunchWithoutTheExtension)
{
    auto const start = manifest.find("<desktop:Extension");
    WriteManifest(Without(manifest.substr(start, manifest.find("</desktop:Extension>") + 20 - start)));
    EXPECT_EQ(Launched({L"", L"Group"}), L"0x80070490");
}

TEST_F(Brokers, DoNotLaunchWithoutTheCapability)
{
    WriteManifest(Without("<rescap:Capability Name=\"runFullTrust\"/>"));
    EXPECT_EQ(Launched({L"", L"Group"}), L"0x80070005");
}

TEST_F(Brokers, PassOnWhyTheDesktopComponentDoesNotStart)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    m_processes->error = ERROR_FILE_NOT_FOUND;
    Say(app, {L"launch-desktop", L"r1", L"", L"Group"});
    EXPECT_EQ(app->received.back(), (sim::Message{L"launched", L"r1", L"0x80070002"}));
}

TEST_F(Brokers, TellANewProcessItsFaultsBeforeItsActivations)
{
    Register();
    EXPECT_EQ(Ask({L"fault", L"CoreApplication.Exit", L"now", L"0x80004005", L"2"})[0], L"ok");
    Ask({L"launch"});
    auto const app = Connect(0);
    ASSERT_EQ(app->received.size(), 3u);
    EXPECT_EQ(app->received[0], (sim::Message{L"fault", L"CoreApplication.Exit", L"now", L"0x80004005", L"2"}));
    EXPECT_EQ(app->received[1], Welcome());
    Ask({L"fault", L"clear"});
    EXPECT_EQ(app->received.back(), sim::Message{L"faults-clear"});
}

TEST_F(Brokers, CountTheFaultsThatStruck)
{
    Register();
    Ask({L"fault", L"CoreApplication.Exit", L"now", L"0x80004005", L"1"});
    Ask({L"launch"});
    auto const first = Connect(0);
    Say(first, {L"fault-used", L"CoreApplication.Exit"});
    EXPECT_EQ(LastEvent().Text(), L"fault call=CoreApplication.Exit kind=now result=0x80004005 times=1");
    m_broker->Closed(first);
    m_processes->End(0, 3);
    Ask({L"launch"});
    EXPECT_EQ(Connect(1)->received.front(), Welcome());
}

TEST_F(Brokers, RefuseAnUnknownFault)
{
    EXPECT_EQ(Ask({L"fault", L"Nothing", L"now", L"0x80004005"})[0], L"error");
}

TEST_F(Brokers, GiveFollowersThePastAndThePresent)
{
    Register();
    auto const follower = std::make_shared<FakePeer>();
    m_broker->Received(follower, {L"follow"});
    ASSERT_EQ(follower->received.size(), 1u);
    Ask({L"launch"});
    ASSERT_EQ(follower->received.size(), 2u);
    EXPECT_EQ(sim::ParseEvent(follower->received[0][1])->kind, L"package-registered");
    EXPECT_EQ(sim::ParseEvent(follower->received[1][1])->kind, L"app-started");
    m_broker->Closed(follower);
    m_processes->End(0, 0);
    EXPECT_EQ(follower->received.size(), 2u);
}

TEST_F(Brokers, KnowTheirPackageAgainAfterARestart)
{
    Register();
    NewBroker();
    EXPECT_EQ(Ask({L"launch"})[0], L"ok");
}

TEST_F(Brokers, NoteAPackageThatIsBrokenAfterARestart)
{
    Register();
    DeleteFileW((m_layout + L"\\App.exe").c_str());
    NewBroker();
    EXPECT_EQ(LastEvent().kind, L"package-lost");
    EXPECT_EQ(Ask({L"launch"})[0], L"error");
}

TEST_F(Brokers, RemoveThePackageWithItsData)
{
    Register();
    Ask({L"launch"});
    m_processes->End(0, 0);
    EXPECT_EQ(Ask({L"unregister"}), (sim::Message{L"ok", family}));
    EXPECT_EQ(GetFileAttributesW(m_device.PackageDataFolder(family).c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(Ask({L"launch"}), (sim::Message{L"error", L"no package is registered: sim register FOLDER comes first"}));
}

TEST_F(Brokers, LeaveThePackageAloneWhileTheAppRuns)
{
    Register();
    Ask({L"launch"});
    EXPECT_EQ(Ask({L"unregister"})[0], L"error");
    EXPECT_EQ(Ask({L"register", m_layout})[0], L"error");
}

TEST_F(Brokers, OpenOnlyDeclaredProtocols)
{
    Register();
    EXPECT_EQ(Ask({L"protocol", L"other:x"})[0], L"error");
    EXPECT_EQ(Ask({L"protocol", L"a-protocol"})[0], L"error");
    EXPECT_TRUE(m_processes->started.empty());
    EXPECT_EQ(Ask({L"protocol", L"A-Protocol:x"})[0], L"ok");
}

TEST_F(Brokers, SuspendARunningAppInTheOrderOfItsActivations)
{
    Register();
    EXPECT_EQ(Ask({L"suspend"})[0], L"error");
    Ask({L"launch"});
    auto const app = Connect(0);
    EXPECT_EQ(Ask({L"suspend"})[0], L"ok");
    EXPECT_EQ(app->received.back(), (sim::Message{L"activate", L"2", L"suspend", L""}));
    Say(app, {L"taken", L"1"});
    Say(app, {L"taken", L"2"});
    EXPECT_EQ(LastEvent().kind, L"suspending");
}

TEST_F(Brokers, DoNotStartAProcessToSuspendIt)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    Say(app, {L"taken", L"1"});
    Ask({L"suspend"});
    Exit(0, app);
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(Brokers, StartTheAppForItsPageAndTellItWhich)
{
    EXPECT_EQ(Ask({L"page", L"A.Page"})[0], L"error"); // no package
    Register();
    EXPECT_EQ(Ask({L"page"})[0], L"error");
    EXPECT_EQ(Ask({L"page", L"A.Page"})[0], L"ok");
    auto const app = Connect(0);
    EXPECT_EQ(app->received.back(), (sim::Message{L"activate", L"1", L"page", L"A.Page"}));
    Say(app, {L"taken", L"1"});
    EXPECT_EQ(LastEvent().Text(), L"page-requested class=A.Page");
}

TEST_F(Brokers, EndWhatRunsWhenTheDeviceIsSwitchedOff)
{
    EXPECT_EQ(Launched({L"", L"Group"}), L"0x00000000");
    EXPECT_EQ(Ask({L"process"}), (sim::Message{L"ok", std::to_wstring(GetCurrentProcessId())}));
    Ask({L"stop"});
    EXPECT_TRUE(m_isStopped);
    m_broker->EndProcesses();
    EXPECT_EQ(m_processes->killed, (std::vector<unsigned long>{100, 101}));
}

TEST_F(Brokers, SayWhatTheDeviceHolds)
{
    Register();
    Ask({L"fault", L"CoreApplication.Exit", L"now", L"0x80004005"});
    Ask({L"launch"});
    auto const status = Ask({L"status"})[1];
    EXPECT_NE(status.find(std::wstring(family) + L" 1.0.0.0 in " + m_layout), std::wstring::npos);
    EXPECT_NE(status.find(L"process 100, activations waiting: 1"), std::wstring::npos);
    EXPECT_NE(status.find(L"CoreApplication.Exit now 0x80004005"), std::wstring::npos);
}

TEST_F(Brokers, RefuseWhatTheyDoNotKnow)
{
    EXPECT_EQ(Ask({L"lunch"}), (sim::Message{L"error", L"the broker knows no lunch"}));
    EXPECT_EQ(Ask({L"register"})[0], L"error");
}
