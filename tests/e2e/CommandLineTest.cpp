#include "tests/e2e/SimulatorDevice.h"

#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/Pipe.h"
#include "tests/support/Files.h"

#include <algorithm>

namespace
{

// The simulator's command line as a program.
class CommandLine : public test::SimulatorDevice
{
  protected:
    // The process that serves the device.
    sim::Handle Broker() const
    {
        auto const pipe = sim::ConnectPipe(sim::Device(m_device).PipeName());
        DWORD id = 0;
        GetNamedPipeServerProcessId(pipe.Get(), &id);
        return sim::Handle(OpenProcess(PROCESS_ALL_ACCESS, FALSE, id));
    }

    static void Kill(sim::Handle const& process)
    {
        TerminateProcess(process.Get(), 1);
        WaitForSingleObject(process.Get(), INFINITE);
    }

    static bool Has(Outcome const& outcome, std::wstring_view text)
    {
        return outcome.output.find(text) != std::wstring::npos;
    }
};

} // namespace

TEST_F(CommandLine, FindsOneBrokerWhenManyStartAtOnce)
{
    std::vector<std::wstring> const calls = {L"Application",
                                             L"Application.Start",
                                             L"Window",
                                             L"Window.Current",
                                             L"Window.Content",
                                             L"CoreApplication",
                                             L"Application.Suspending",
                                             L"CoreApplication.Exit"};
    std::vector<Running> running;
    for (auto const& call : calls)
    {
        running.push_back(Start(L"fault " + call + L" now 0x80004005"));
    }
    for (auto const& one : running)
    {
        auto const outcome = Wait(one);
        EXPECT_EQ(outcome.exitCode, 0u) << sim::ToUtf8(outcome.output);
    }
    auto const status = Run(L"status").output;
    for (auto const& call : calls)
    {
        EXPECT_NE(status.find(call + L" now"), std::wstring::npos) << sim::ToUtf8(call);
    }
}

TEST_F(CommandLine, RegistersThePackageAndRemovesIt)
{
    EXPECT_EQ(Run(L"register").output, L"Velmo.NotificationClient_m7dy57p66fpam\n");
    EXPECT_NE(Run(L"status").output.find(L"Velmo.NotificationClient_m7dy57p66fpam"), std::wstring::npos);
    EXPECT_EQ(Run(L"unregister").exitCode, 0u);
    EXPECT_NE(Run(L"events").output.find(L" package-unregistered "), std::wstring::npos);
}

TEST_F(CommandLine, SaysWhatIsMissing)
{
    auto const outcome = Run(L"register \"" + m_folder.Path() + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_EQ(outcome.output, L"sim: there is no file " + m_folder.Path() + L"\\AppxManifest.xml\n");
}

TEST_F(CommandLine, KnowsThePackageAgainWhenTheDeviceIsSwitchedOn)
{
    Run(L"register");
    EXPECT_EQ(Run(L"stop").output, L"the device is switched off\n");
    EXPECT_EQ(Run(L"stop").output, L"the device was not switched on\n");
    EXPECT_NE(Run(L"status").output.find(L"Velmo.NotificationClient_m7dy57p66fpam"), std::wstring::npos);
}

TEST_F(CommandLine, EndsItsBrokerWhenTheDevicesFolderGoes)
{
    Run(L"status");
    sim::Handle const broker(OpenMutexW(SYNCHRONIZE, FALSE, sim::Device(m_device).MutexName().c_str()));
    ASSERT_TRUE(broker);
    EXPECT_EQ(WaitForSingleObject(broker.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT)); // it serves
    sim::Remove(m_device);
    EXPECT_EQ(WaitForSingleObject(broker.Get(), 30'000), static_cast<DWORD>(WAIT_ABANDONED));
}

TEST_F(CommandLine, SaysThatItsBrokerWasKilledAndHasItsFaultsAgain)
{
    Run(L"fault Window now 0x80004005");
    Kill(Broker());
    EXPECT_TRUE(Has(Run(L"status"), L"Window now 0x80004005"));
    EXPECT_TRUE(Has(Run(L"events"), L" broker-lost last-instance=0 faults=1\n"));
    Run(L"stop");
    Run(L"status");
    auto const events = Run(L"events").output;
    EXPECT_EQ(events.find(L"broker-lost"), events.rfind(L"broker-lost"));
}

TEST_F(CommandLine, SaysThatItsBrokerHangs)
{
    Run(L"status");
    auto const broker = Broker();
    Run(L"status"); // then its next end of the pipe is there
    auto const suspend = reinterpret_cast<LONG(__stdcall*)(HANDLE)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtSuspendProcess")));
    ASSERT_EQ(suspend(broker.Get()), 0);
    auto const outcome = Run(L"status");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_TRUE(Has(outcome, L"sim: the device's broker (process " + std::to_wstring(GetProcessId(broker.Get())) +
                                 L") has not answered for 5 s: end its process, and the next command starts another "
                                 L"one\n"))
        << sim::ToUtf8(outcome.output);
    Kill(broker);
    EXPECT_EQ(Run(L"status").exitCode, 0u);
}

// It cannot hear that its broker is lost.
TEST_F(CommandLine, EndsASuspendedAppWithItsBroker)
{
    Run(L"register");
    Run(L"page VelmoNotificationClient.MainPage"); // it stays
    Run(L"suspend");
    std::wstring status;
    while (status.find(L", suspended\n") == std::wstring::npos)
    {
        status = Run(L"status").output;
    }
    std::wstring const before = L"process ";
    auto const id = std::stoul(status.substr(status.find(before) + before.size()));
    sim::Handle const app(OpenProcess(SYNCHRONIZE, FALSE, id));
    EXPECT_EQ(WaitForSingleObject(app.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    Kill(Broker());
    EXPECT_EQ(WaitForSingleObject(app.Get(), 30'000), static_cast<DWORD>(WAIT_OBJECT_0));
}

TEST_F(CommandLine, SaysThatAStateFileIsDamaged)
{
    Run(L"status");
    Run(L"stop");
    test::WriteBytes(m_device + L"\\clock.txt", "nonsense\r\n");
    EXPECT_TRUE(Has(Run(L"status"), L"\\clock.txt.damaged was set aside; sim events tells why\n"));
    EXPECT_TRUE(Has(Run(L"events"), L" state-damaged file="));
}

TEST_F(CommandLine, SaysWhyThereIsNoLog)
{
    auto const refused = Run(L"log");
    EXPECT_EQ(refused.exitCode, 1u);
    EXPECT_EQ(refused.output, L"doctor: no package is registered: sim register FOLDER comes first\n");
}

TEST_F(CommandLine, ShowsTheDecodedLog)
{
    Run(L"play \"" EXIT_SCENARIO L"\""); // leaves the device as it was at the end
    auto const log = Run(L"log");
    EXPECT_EQ(log.exitCode, 0u);
    std::wstring const expected = L" ZEBMain    Inside OnActivated App activated by URI protocol\n";
    EXPECT_TRUE(Has(log, expected)) << sim::ToUtf8(log.output);
    auto const found = Run(L"log --level info --grep \"onactivated app activated\"");
    EXPECT_EQ(found.exitCode, 0u);
    EXPECT_TRUE(found.output.ends_with(expected)) << sim::ToUtf8(found.output);
    EXPECT_EQ(std::ranges::count(found.output, L'\n'), 1) << sim::ToUtf8(found.output);
    EXPECT_TRUE(Has(found, L" INFO ")) << sim::ToUtf8(found.output);
}

TEST_F(CommandLine, TellsWhatDiffersFromAScenario)
{
    auto const scenario = m_folder / L"wrong.scenario";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n"
                               "protocol velmo-notification:x\n"
                               "expect event app-started\n"
                               "expect event activated kind=launch\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(scenario + L":5: expect event activated kind=launch differs\n"
                                             L"  expected: activated kind=launch\n"
                                             L"  found:    activated kind=protocol"),
              std::wstring::npos)
        << sim::ToUtf8(outcome.output);
}

TEST_F(CommandLine, TellsAVerdictThatDiffersFromAScenario)
{
    auto const scenario = m_folder / L"verdict.scenario";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n"
                               "expect verdict failed exit\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(scenario + L":3: expect verdict failed exit differs\n"
                                             L"  expected: the verdict failed exit\n"
                                             L"  found:    not-seen: There is no line of the app."),
              std::wstring::npos)
        << sim::ToUtf8(outcome.output);
}

TEST_F(CommandLine, DrawsAPlayAlsoWithoutALog)
{
    auto const scenario = m_folder / L"register.scenario";
    auto const page = m_folder / L"page.html";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n");
    auto const trace = m_folder / L"trace.json";
    auto const played = Run(L"play --html \"" + page + L"\" --trace \"" + trace + L"\" \"" + scenario + L"\"");
    EXPECT_EQ(played.exitCode, 0u);
    EXPECT_TRUE(Has(played, L"/page.html\n\nits trace events: ")) << sim::ToUtf8(played.output);
    auto const drawn = test::ReadBytes(page);
    EXPECT_NE(drawn.find("The app has written no log."), std::string::npos);
    EXPECT_NE(drawn.find("package-registered"), std::string::npos);
    auto const events = test::ReadBytes(trace);
    EXPECT_TRUE(events.starts_with("{\"traceEvents\":[")) << events;
    EXPECT_NE(events.find(R"({"ph":"i","name":"package-registered family=)"), std::string::npos) << events;
    auto const refused = Run(L"play --html \"" + m_folder / L"missing\\page.html" + L"\" \"" + scenario + L"\"");
    EXPECT_EQ(refused.exitCode, 1u);
    EXPECT_NE(refused.output.find(L"nothing else happened"), std::wstring::npos) << sim::ToUtf8(refused.output);
    EXPECT_NE(refused.output.find(L"page.html: "), std::wstring::npos) << sim::ToUtf8(refused.output);
}

TEST_F(CommandLine, TellsWhatHappenedBeyondAScenario)
{
    auto const scenario = m_folder / L"short.scenario";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n"
                               "protocol velmo-notification:x\n"
                               "expect event app-started\n"
                               "expect event activated\n"
                               "expect event exit-announced\n"
                               "expect exit 0\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(L"  expected: nothing more\n"), std::wstring::npos);
    EXPECT_NE(outcome.output.find(L"Inside OnActivated App activated by URI protocol\n"), std::wstring::npos);
}

TEST_F(CommandLine, RefusesAScenarioWithAnUnknownStep)
{
    auto const scenario = m_folder / L"broken.scenario";
    test::WriteBytes(scenario, "lunch\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(scenario + L":1: lunch: there is no step lunch"), std::wstring::npos);
}

TEST_F(CommandLine, RecordsWhatWasPlayedByHandAsAScenarioThatPasses)
{
    auto const input = m_folder / L"input.txt";
    auto const scenario = m_folder / L"recorded.scenario";
    test::WriteBytes(input, "register\n\nlunch\r\nexpect event x\nprotocol velmo-notification:x");
    auto const recorded = Wait(Start(L"play --record \"" + scenario + L"\"", input));
    EXPECT_EQ(recorded.exitCode, 0u) << sim::ToUtf8(recorded.output);
    EXPECT_NE(recorded.output.find(L"sim: there is no step lunch\n"), std::wstring::npos);
    EXPECT_NE(recorded.output.find(L"sim: results are recorded by themselves\n"), std::wstring::npos);
    EXPECT_EQ(test::ReadBytes(scenario),
              "register\n"
              "expect event package-registered family={family} version=1.0.0.0\n"
              "\n"
              "protocol velmo-notification:x\n"
              "expect event app-started\n"
              "expect event activated kind=protocol uri=velmo-notification:x\n"
              "expect event exit-announced\n"
              "expect exit 0\n"
              "expect log '****************************** VelmoNotificationCLient Started. "
              "*********************************' level=INFO category=ZEBMain\n"
              "expect log 'Inside OnActivated App activated by URI protocol' level=INFO category=ZEBMain\n"
              "expect verdict worked\n");
    auto const played = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(played.exitCode, 0u) << sim::ToUtf8(played.output);
}

TEST_F(CommandLine, RecordsNothingWhereTheScenarioCannotBeWritten)
{
    auto const outcome = Run(L"play --record \"" + m_folder / L"missing\\a.scenario" + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(L"sim: cannot write "), std::wstring::npos) << sim::ToUtf8(outcome.output);
}

TEST_F(CommandLine, RefusesAScenarioWithoutAStep)
{
    auto const scenario = m_folder / L"empty.scenario";
    test::WriteBytes(scenario, "# nothing\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_EQ(outcome.output, L"sim: " + scenario + L": there is no step in it\n");
}

TEST_F(CommandLine, RestartsTheDeviceWithWhatItKeeps)
{
    Run(L"register");
    Run(L"fault CoreApplication.Exit now 0x80004005");
    EXPECT_EQ(Run(L"restart").output, L"the device is switched off and on again\n");
    auto const status = Run(L"status").output;
    EXPECT_NE(status.find(L"Velmo.NotificationClient_m7dy57p66fpam 1.0.0.0"), std::wstring::npos);
    EXPECT_EQ(status.find(L"CoreApplication.Exit"), std::wstring::npos); // as after stop
}

TEST_F(CommandLine, TellsThatAStepOfAScenarioWasNotRefused)
{
    auto const scenario = m_folder / L"refused.scenario";
    for (auto const* step :
         {"refused 'no package' register\n", "refused 'another reason' kill\n", "refused x kill x\n"})
    {
        test::WriteBytes(scenario, step);
        EXPECT_EQ(Run(L"play \"" + scenario + L"\"").exitCode, 1u) << step;
    }
    test::WriteBytes(scenario, "refused 'is not running' kill\n");
    EXPECT_EQ(Run(L"play \"" + scenario + L"\"").exitCode, 0u);
}

TEST_F(CommandLine, TellsWhatAHelperPrintedInsteadOfWhatAScenarioSays)
{
    auto const scenario = m_folder / L"helper.scenario";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n"
                               "helper @one --timeout\n"
                               "expect helper @one 'something else'\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(L"  expected: the helper @one: something else\n  found:    helper: "),
              std::wstring::npos)
        << sim::ToUtf8(outcome.output);
}

TEST_F(CommandLine, TellsThatAHelperStillRunsAtTheEndOfAScenario)
{
    auto const scenario = m_folder / L"helper.scenario";
    test::WriteBytes(scenario, "register\n"
                               "expect event package-registered\n"
                               "helper @one --watch\n"
                               "expect event task-started\n");
    auto const outcome = Run(L"play \"" + scenario + L"\"");
    EXPECT_EQ(outcome.exitCode, 1u);
    EXPECT_NE(outcome.output.find(L"  found:    the helper @one runs\n"), std::wstring::npos)
        << sim::ToUtf8(outcome.output);
}

TEST_F(CommandLine, AcceptsLogLinesOfSeveralThreadsInTheOrderOfEachAndNoOthers)
{
    std::string const steps = "register\n"
                              "expect event package-registered\n"
                              "protocol velmo-notification:x\n"
                              "expect event app-started\n"
                              "expect event activated\n"
                              "expect event exit-announced\n"
                              "expect exit 0\n"
                              "expect interleaved log ";
    auto const play = [&](std::string const& lines) {
        auto const scenario = m_folder / L"interleaved.scenario";
        test::WriteBytes(scenario, steps + lines);
        return Run(L"play \"" + scenario + L"\"");
    };
    std::string const first =
        "'****************************** VelmoNotificationCLient Started. *********************************' ";
    std::string const second = "'Inside OnActivated App activated by URI protocol' ";
    for (auto const& right : {first + second, second + "| " + first, "category=ZEBMain " + first + "| " + second})
    {
        auto const played = play(right);
        EXPECT_EQ(played.exitCode, 0u) << sim::ToUtf8(played.output);
    }
    for (auto const& wrong : {second + first, "level=ERROR " + second + "| level=INFO " + first})
    {
        auto const played = play(wrong);
        EXPECT_EQ(played.exitCode, 1u);
        EXPECT_NE(played.output.find(L"  found:    log line "), std::wstring::npos) << sim::ToUtf8(played.output);
    }
    EXPECT_EQ(play(first + "| ").exitCode, 1u);
}

TEST_F(CommandLine, KeepsClockTasksAndSettingsOfTheDevice)
{
    Run(L"register");
    auto const before = Run(L"clock").output;
    auto const after = Run(L"clock +30d").output;
    EXPECT_NE(after.substr(0, 10), before.substr(0, 10));
    Run(L"stop");
    EXPECT_EQ(Run(L"clock").output.substr(0, 10), after.substr(0, 10));
    EXPECT_EQ(Run(L"tasks").output, L"registered:\nrunning:\n");
    EXPECT_EQ(Run(L"settings").output, L"");
    EXPECT_EQ(Run(L"push x").output, L"lost: the app has no open channel\n");
}
