#include "tests/unit/simulator/ServicesFixture.h"

#include "simulator/base/Text.h"
#include "simulator/protocol/CancellationReason.h"
#include "tests/support/Files.h"

namespace
{

constexpr wchar_t otherFamily[] = L"B.Package_m7dy57p66fpam";
constexpr wchar_t downgrade[] = L"version 0.9.65535.0 is lower than the registered 1.0.0.0 "
                                L"(ERROR_INSTALL_PACKAGE_DOWNGRADE, 0x80073D06); --force puts it in its place";

// A package takes another one's place: a version of its own family, or of another family.
class ServicingTest : public ServicesFixture
{
  protected:
    // The package in the folder becomes another one.
    void Make(std::string const& name, std::string const& version)
    {
        std::string const identity = R"(Name="A.Package" Publisher="CN=Velmo" Version="1.0.0.0")";
        auto text = manifest;
        text.replace(text.find(identity), identity.size(),
                     "Name=\"" + name + R"(" Publisher="CN=Velmo" Version=")" + version + "\"");
        WriteManifest(text);
    }

    // The app that runs goes, and the folder's package is registered; its app runs in the background.
    void Switch(std::string const& name)
    {
        ExitApp();
        Make(name, "1.0.0.0");
        Ask(sim::RegisterPackage{m_layout});
        Launch();
        ConnectNextApp();
        Take(m_app, m_activations.back().id);
        m_activations.clear();
        Reports();
    }

    std::wstring Uri() { return Ask(m_app, sim::CreateChannel{}).uri; }

    Asked<sim::UpdatePackage> Update(std::string const& version)
    {
        Make("A.Package", version);
        return AskLater(m_commandLine, sim::UpdatePackage{m_layout});
    }

    std::vector<unsigned long> const& Ended() const { return m_processes->killed; }
};

} // namespace

TEST_F(ServicingTest, GivesAFamilyNoTasksNoChannelAndNoDataOfAnother)
{
    auto const uri = Uri();
    RegisterPush(L"A Task");
    auto const data = m_device.PackageDataFolder(family) + L"\\data.txt";
    test::WriteBytes(data, "of the app");
    Switch("B.Package");
    EXPECT_TRUE(TasksOf(m_app).tasks.empty());
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_NE(Uri(), uri);
    RegisterPush(L"Another Task");
    Switch("A.Package");
    ASSERT_EQ(TasksOf(m_app).tasks.size(), 1u);
    EXPECT_EQ(TasksOf(m_app).tasks[0].name, L"A Task");
    EXPECT_EQ(Uri(), uri);
    EXPECT_EQ(test::ReadBytes(data), "of the app");
}

TEST_F(ServicingTest, RemovesWhatBelongsToThePackageAndLeavesTheRest)
{
    auto const uri = Uri();
    RegisterPush(L"A Task");
    Switch("B.Package");
    Uri();
    RegisterPush(L"Another Task");
    ExitApp();
    EXPECT_EQ(Ask(sim::UnregisterPackage{}), otherFamily);
    EXPECT_FALSE(test::FileExists(m_device.PackageDataFolder(otherFamily)));
    EXPECT_EQ(Ask(sim::ShowTasks{}), L"registered:\nrunning:");
    SwitchOn();
    Make("A.Package", "1.0.0.0");
    Register();
    Launch();
    ConnectNextApp();
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 1u);
    EXPECT_EQ(Uri(), uri);
    Switch("B.Package");
    EXPECT_TRUE(TasksOf(m_app).tasks.empty());
}

TEST_F(ServicingTest, RefusesALowerVersionUnlessForced)
{
    ExitApp();
    Reports();
    Make("A.Package", "0.9.65535.0");
    EXPECT_EQ(RefusalOf(sim::RegisterPackage{m_layout}), downgrade);
    EXPECT_EQ(RefusalOf(sim::UpdatePackage{m_layout}), downgrade);
    EXPECT_EQ(Reports(), Texts{});
    EXPECT_NE(Ask(sim::ShowStatus{}).find(L"A.Package_m7dy57p66fpam 1.0.0.0 in "), std::wstring::npos);
    EXPECT_EQ(Ask(sim::RegisterPackage{m_layout, true}), family);
    EXPECT_EQ(Reports(), Texts{L"package-registered family=A.Package_m7dy57p66fpam version=0.9.65535.0"});
}

TEST_F(ServicingTest, ComparesVersionsAsNumbers)
{
    ExitApp();
    for (auto const* version : {"1.0.0.9", "1.0.0.9", "1.0.0.10", "1.0.9.0", "1.0.10.0", "2.0.0.0", "10.0.0.0"})
    {
        Make("A.Package", version);
        EXPECT_EQ(Ask(sim::RegisterPackage{m_layout}), family) << version;
    }
    Make("A.Package", "9.65535.65535.65535");
    EXPECT_NE(RefusalOf(sim::RegisterPackage{m_layout}), L"");
}

TEST_F(ServicingTest, TakesALowerVersionOfAnotherFamily)
{
    ExitApp();
    Make("B.Package", "0.0.0.1");
    EXPECT_EQ(Ask(sim::RegisterPackage{m_layout}), otherFamily);
}

TEST_F(ServicingTest, AnUpdateOfAnAppThatDoesNotRunIsDoneAtOnce)
{
    ExitApp();
    Reports();
    EXPECT_TRUE(Update("1.0.0.1").Take());
    EXPECT_EQ(Reports(), Texts{L"package-registered family=A.Package_m7dy57p66fpam version=1.0.0.1"});
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(ServicingTest, AnUpdateEndsTheAppAndKeepsItsTasksAndChannel)
{
    auto const uri = Uri();
    RegisterPush(L"A Task");
    Reports();
    auto const update = Update("1.0.0.1");
    EXPECT_EQ(Ended(), std::vector<unsigned long>{100});
    EXPECT_FALSE(update.Take());
    KillApp();
    EXPECT_EQ(update.Take()->text, family);
    EXPECT_EQ(Ended().size(), 1u);
    EXPECT_EQ(Reports(), (Texts{L"app-terminated pid=100 code=1",
                                L"package-registered family=A.Package_m7dy57p66fpam version=1.0.0.1"}));
    Launch();
    ConnectNextApp();
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 1u);
    EXPECT_EQ(Uri(), uri);
}

TEST_F(ServicingTest, AnUpdateCancelsTheRunningTasksAndStartsTheNewVersionForWhatWaits)
{
    Uri();
    RegisterPush(L"A Task");
    StartInBackground();
    m_activations.clear();
    Push(L"first");
    Return(0);
    Push(L"second");
    Reports();
    auto const update = Update("1.0.0.1");
    EXPECT_EQ(Reports(), Texts{L"task-cancelled instance=1 name='A Task' wake=1 reason=ServicingUpdate"});
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, sim::CancellationReason::servicingUpdate}));
    EXPECT_TRUE(Ended().empty()); // the task's deferrals first
    Complete(0);
    EXPECT_EQ(Ended().size(), 1u);
    EXPECT_EQ(m_activations.size(), 1u); // the second push is not for this process
    EXPECT_FALSE(update.Take());
    KillApp();
    EXPECT_TRUE(update.Take());
    auto const reports = Reports();
    ASSERT_EQ(reports.size(), 5u);
    EXPECT_EQ(
        Texts(reports.begin(), reports.begin() + 4),
        (Texts{L"task-completed instance=1 name='A Task' wake=1", L"task-started instance=2 name='A Task' wake=2",
               L"app-terminated pid=7 code=1", L"package-registered family=A.Package_m7dy57p66fpam version=1.0.0.1"}));
    EXPECT_EQ(LastEvent().kind, L"app-started"); // the new version's process
    EXPECT_EQ(m_processes->started.size(), 2u);
    ConnectNextApp();
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(TaskAt(1).payload, L"second");
}

TEST_F(ServicingTest, AnUpdateDoesNotWaitLongerThanACancelledTaskMay)
{
    Open(m_caller);
    auto const update = Update("1.0.0.1");
    EXPECT_TRUE(Ended().empty());
    Pass(sim::Limits().afterCancel);
    EXPECT_EQ(Ended().size(), 1u);
    KillApp();
    EXPECT_TRUE(update.Take());
}

TEST_F(ServicingTest, AnAppServiceIsUnavailableDuringAnUpdate)
{
    auto const update = Update("1.0.0.1");
    EXPECT_EQ(Ask(m_caller, OpenService()).status, sim::OpenStatus::AppUnavailable);
    KillApp();
    EXPECT_TRUE(update.Take());
    AskLater(m_caller, OpenService());
    EXPECT_EQ(m_processes->started.size(), 2u);
}

TEST_F(ServicingTest, AnUpdateThatCannotBeWrittenLeavesTheOldVersion)
{
    auto const update = Update("1.0.0.1");
    Launch(L"late");
    DeleteFileW(m_device.RegistrationFile().c_str());
    CreateDirectoryW(m_device.RegistrationFile().c_str(), nullptr);
    KillApp();
    EXPECT_NE(update.TakeRefusal(), L"");
    EXPECT_NE(Ask(sim::ShowStatus{}).find(L"A.Package_m7dy57p66fpam 1.0.0.0 in "), std::wstring::npos);
    EXPECT_EQ(m_processes->started.size(), 2u); // the launch is not lost
}

TEST_F(ServicingTest, ALaunchDuringAnUpdateIsForTheNewVersion)
{
    auto const update = Update("1.0.0.1");
    Launch(L"late");
    EXPECT_TRUE(m_activations.empty());
    KillApp();
    EXPECT_TRUE(update.Take());
    ASSERT_EQ(m_processes->started.size(), 2u);
    auto kinds = EventKinds();
    EXPECT_EQ(Kinds(kinds.end() - 3, kinds.end()), (Kinds{L"app-terminated", L"package-registered", L"app-started"}));
    ConnectNextApp();
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(std::get<sim::UserLaunch>(m_activations[0].content).arguments, L"late");
}

TEST_F(ServicingTest, AnUpdateIsRefusedForAnotherFamilyDuringOneAndWithoutAPackage)
{
    Make("B.Package", "2.0.0.0");
    EXPECT_EQ(RefusalOf(sim::UpdatePackage{m_layout}),
              L"B.Package_m7dy57p66fpam is no update of A.Package_m7dy57p66fpam; sim register puts it in its place");
    auto const update = Update("1.0.0.1");
    EXPECT_EQ(RefusalOf(sim::UpdatePackage{m_layout}), L"the package is being updated already");
    KillApp();
    EXPECT_TRUE(update.Take());
    Ask(sim::UnregisterPackage{});
    EXPECT_EQ(RefusalOf(sim::UpdatePackage{m_layout}), L"no package is registered: sim register FOLDER comes first");
}
