#include "simulator/client/DeviceCommands.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Words.h"
#include "tests/unit/simulator/MessageEquality.h"

#include <set>
#include <windows.h>

namespace
{

struct Example
{
    wchar_t const* words;
    sim::AnyRequest request;
};

// Each command that there is, with and without what may follow.
std::vector<Example> Examples()
{
    return {{L"register C:\\package", sim::RegisterPackage{L"C:\\package"}},
            {L"register C:/a/../package", sim::RegisterPackage{L"C:\\package"}},
            {L"register --force C:\\package", sim::RegisterPackage{L"C:\\package", true}},
            {L"update C:\\package", sim::UpdatePackage{L"C:\\package"}},
            {L"update --force C:\\package", sim::UpdatePackage{L"C:\\package", true}},
            {L"unregister", sim::UnregisterPackage{}},
            {L"launch", sim::LaunchApp{}},
            {L"launch 'some arguments'", sim::LaunchApp{L"some arguments"}},
            {L"protocol a-protocol:x", sim::OpenUri{L"a-protocol:x"}},
            {L"suspend", sim::SuspendApp{}},
            {L"page A.Page", sim::RequestPage{L"A.Page"}},
            {L"kill", sim::KillApp{}},
            {L"push", sim::Push{}},
            {L"push 'a payload'", sim::Push{L"a payload"}},
            {L"push --uri https://uri", sim::Push{L"", L"https://uri"}},
            {L"push --uri https://uri 'a payload'", sim::Push{L"a payload", L"https://uri"}},
            {L"access denied", sim::SetCondition{sim::Condition::AccessDenied, true}},
            {L"access allowed", sim::SetCondition{sim::Condition::AccessDenied, false}},
            {L"battery saver", sim::SetCondition{sim::Condition::BatterySaver, true}},
            {L"battery normal", sim::SetCondition{sim::Condition::BatterySaver, false}},
            {L"network off", sim::SetCondition{sim::Condition::NetworkOff, true}},
            {L"network on", sim::SetCondition{sim::Condition::NetworkOff, false}},
            {L"logoff", sim::SetCondition{sim::Condition::LoggedOff, true}},
            {L"logon", sim::SetCondition{sim::Condition::LoggedOff, false}},
            {L"sleep", sim::SetCondition{sim::Condition::Asleep, true}},
            {L"wake", sim::SetCondition{sim::Condition::Asleep, false}},
            {L"clock", sim::AdvanceClock{0}},
            {L"clock +15m", sim::AdvanceClock{15}},
            {L"clock +24h", sim::AdvanceClock{24 * 60}},
            {L"clock +30d", sim::AdvanceClock{30 * 24 * 60}},
            {L"clock +4294967295d", sim::AdvanceClock{4'294'967'295LL * 24 * 60}},
            {L"revoke-channel", sim::RevokeChannel{}},
            {L"tasks", sim::ShowTasks{}},
            {L"cancel-tasks Abort", sim::CancelTasks{0}},
            {L"cancel-tasks EnergySaver", sim::CancelTasks{11}},
            {L"status", sim::ShowStatus{}},
            {L"fault clear", sim::ClearFaults{}},
            {L"fault CoreApplication.Exit now 0x80004005 2 after 1",
             sim::SetFault{{L"CoreApplication.Exit", sim::FaultKind::Now, 0x80004005, 2, 1}}}};
}

// Why the words are refused; empty when they are not.
std::wstring RefusalOfWords(sim::Words const& words)
{
    try
    {
        sim::RequestFor(words);
        return {};
    }
    catch (sim::Error const& error)
    {
        return error.Message();
    }
}

std::wstring RefusalOfLine(std::wstring_view words)
{
    return RefusalOfWords(sim::SplitWords(words));
}

} // namespace

TEST(DeviceCommandsTest, MakeRequestsOfWords)
{
    for (auto const& [words, request] : Examples())
    {
        EXPECT_EQ(sim::RequestFor(sim::SplitWords(words)), request) << testing::PrintToString(words);
    }
}

TEST(DeviceCommandsTest, AreAllTested)
{
    std::set<std::wstring_view> tested;
    auto const examples = Examples();
    for (auto const& example : examples)
    {
        std::wstring_view const words = example.words;
        tested.insert(words.substr(0, words.find(L' ')));
    }
    for (auto const& command : sim::DeviceCommands())
    {
        EXPECT_TRUE(tested.contains(command.name)) << testing::PrintToString(command.name);
    }
}

TEST(DeviceCommandsTest, RegisterThePackageOfTheEnvironment)
{
    SetEnvironmentVariableW(L"VELMO_SIM_PACKAGE", L"C:\\another");
    EXPECT_EQ(sim::RequestFor({L"register"}), sim::AnyRequest(sim::RegisterPackage{L"C:\\another"}));
    SetEnvironmentVariableW(L"VELMO_SIM_PACKAGE", nullptr);
    EXPECT_NE(RefusalOfLine(L"register"), L"");
}

TEST(DeviceCommandsTest, RefuseAnUnknownCommand)
{
    EXPECT_EQ(RefusalOfLine(L"lunch"), L"there is no command lunch");
    EXPECT_EQ(RefusalOfLine(L"Launch"), L"there is no command Launch");
    EXPECT_EQ(RefusalOfWords(sim::Words{}), L"an empty command");
    EXPECT_EQ(sim::FindCommand(sim::DeviceCommands(), L"lunch"), nullptr);
}

TEST(DeviceCommandsTest, RefuseTooFewAndTooManyWords)
{
    EXPECT_EQ(RefusalOfLine(L"protocol"), L"usage: protocol URI");
    EXPECT_EQ(RefusalOfLine(L"clock +1h +1h"), L"usage: clock [+TIME]");
    for (auto const& command : sim::DeviceCommands())
    {
        sim::Words words(command.fewestWords, L"x"); // the command's name and one too few
        if (!words.empty())
        {
            words[0] = command.name;
            EXPECT_EQ(RefusalOfWords(words).find(L"usage: "), 0u) << testing::PrintToString(command.name);
        }
        if (command.mostWords < 10)
        {
            words.assign(command.mostWords + 2, L"x");
            words[0] = command.name;
            EXPECT_EQ(RefusalOfWords(words).find(L"usage: "), 0u) << testing::PrintToString(command.name);
        }
    }
}

TEST(DeviceCommandsTest, PutTheClockOnlyForward)
{
    for (auto const* step : {L"24h", L"+h", L"+0h", L"+1w", L"", L"+", L"+-1h", L"-1h", L"+4294967296d", L"+1"})
    {
        EXPECT_EQ(RefusalOfWords({L"clock", step}), L"expected a time such as +15m, +24h or +30d")
            << testing::PrintToString(step);
    }
}

TEST(DeviceCommandsTest, RegisterOneFolder)
{
    EXPECT_EQ(RefusalOfLine(L"register C:\\a C:\\b"), L"expected one folder");
    EXPECT_EQ(RefusalOfLine(L"update C:\\a --force"), L"expected one folder");
}

TEST(DeviceCommandsTest, RefuseAnUnknownReason)
{
    EXPECT_EQ(RefusalOfLine(L"cancel-tasks abort"),
              L"there is no reason abort; the platform knows Abort Terminating LoggingOff ServicingUpdate IdleTask "
              L"Uninstall ConditionLoss SystemPolicy QuietHoursEntered ExecutionTimeExceeded ResourceRevocation "
              L"EnergySaver");
}

TEST(DeviceCommandsTest, RefuseAFaultThatMakesNoSense)
{
    EXPECT_NE(RefusalOfLine(L"fault Nothing now 0x80004005"), L"");
    EXPECT_NE(RefusalOfLine(L"fault clear all"), L"");
    EXPECT_NE(RefusalOfLine(L"fault CoreApplication.Exit"), L"");
}

TEST(DeviceCommandsTest, RefuseAPushWithoutTheUriOrWithMoreThanAPayload)
{
    for (auto const* words : {L"push --uri", L"push one two", L"push one two three"})
    {
        EXPECT_EQ(RefusalOfLine(words), L"usage: push [--uri URI] [PAYLOAD]") << testing::PrintToString(words);
    }
}

TEST(DeviceCommandsTest, RefuseAConditionThatThereIsNot)
{
    EXPECT_EQ(RefusalOfLine(L"access granted"), L"access is denied or allowed");
    EXPECT_EQ(RefusalOfLine(L"battery full"), L"battery is saver or normal");
    EXPECT_EQ(RefusalOfLine(L"network saver"), L"network is off or on");
}
