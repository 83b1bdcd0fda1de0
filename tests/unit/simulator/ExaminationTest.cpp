#include "simulator/doctor/Examination.h"

#include "simulator/base/Moment.h"
#include "simulator/base/Text.h"

#include <gtest/gtest.h>

using doctor::Finding;
using doctor::Result;
using doctor::Stage;

namespace
{

constexpr std::int64_t day = 24LL * 60 * 60 * 10'000'000;
constexpr std::int64_t now = 133'489'512'000'000'000;

// A device on which all is well.
sim::Examined Well()
{
    sim::Examined examined;
    examined.state.package = sim::PackageState{L"A.Package_m7dy57p66fpam", L"1.0.0.0", L"C:\\package"};
    examined.state.clock.now = now;
    examined.state.channel = sim::ChannelState{L"https://uri", now + 3 * day};
    examined.state.tasks.registered = {{L"Push", sim::Trigger::Push, 0}, {L"Daily", sim::Trigger::Timer, now + day}};
    examined.storedUri = L"https://uri";
    return examined;
}

std::vector<Stage> StagesOf(std::vector<Finding> const& findings)
{
    std::vector<Stage> stages;
    std::ranges::transform(findings, std::back_inserter(stages), &Finding::stage);
    return stages;
}

// Of a stage that failed.
Finding FailureIn(std::vector<Finding> const& findings, Stage stage)
{
    for (auto const& finding : findings)
    {
        if (finding.stage == stage && finding.result == Result::Failed)
        {
            EXPECT_NE(finding.advice, "");
            return finding;
        }
    }
    ADD_FAILURE() << "nothing failed in " << doctor::StageName(stage);
    return {};
}

} // namespace

TEST(Examination, FindsNothingWrongWithADeviceOnWhichAllIsWell)
{
    auto const findings = sim::Examine(Well());
    EXPECT_EQ(StagesOf(findings),
              (std::vector<Stage>{Stage::Package, Stage::Channel, Stage::UriStored, Stage::TasksRegistered,
                                  Stage::Woken, Stage::Woken, Stage::Woken, Stage::Exit}));
    for (auto const& finding : findings)
    {
        EXPECT_NE(finding.result, Result::Failed) << finding.what;
    }
    EXPECT_EQ(findings[1].what, "The channel is open for another 3 days.");
    EXPECT_EQ(findings[6].result, Result::NotSeen); // no push came
}

TEST(Examination, SaysThatNoPackageIsRegistered)
{
    auto const findings = sim::Examine({});
    EXPECT_EQ(StagesOf(findings), (std::vector<Stage>{Stage::Package, Stage::Exit}));
    EXPECT_EQ(FailureIn(findings, Stage::Package).what, "No package is registered on the device.");
}

TEST(Examination, SaysWhatIsRegisteredTwice)
{
    auto examined = Well();
    examined.state.tasks.registered.push_back({L"Push", sim::Trigger::Push, 0});
    auto const findings = sim::RegistrationFindings(examined.state.tasks);
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(FailureIn(findings, Stage::TasksRegistered).what,
              "The task Push is registered 2 times: each push or timer wakes the suite as often.");
}

TEST(Examination, SaysWhatIsNotRegistered)
{
    auto examined = Well();
    examined.state.tasks.registered.pop_back();
    auto const findings = sim::RegistrationFindings(examined.state.tasks);
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(FailureIn(findings, Stage::TasksRegistered).what, "No background task is registered for the timer.");
    EXPECT_EQ(sim::RegistrationFindings({}).size(), 2u);
}

TEST(Examination, SaysWhyThereIsNoChannel)
{
    auto examined = Well();
    examined.state.channel.reset();
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::Channel).cause, "No helper has asked the app for one.");
    examined.journal = {{1, L"channel-created", {}}, {2, L"channel-expired", {}}, {3, L"app-idle", {}}};
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::Channel).cause, "It is 30 days old.");
    examined.journal.push_back({4, L"channel-revoked", {}});
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::Channel).cause, "It was revoked before its time.");
    examined.journal.push_back({5, L"channel-created", {}});
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::Channel).cause, "Its file on the device was lost.");
}

TEST(Examination, TakesAChannelBehindItsTimeForNone)
{
    auto examined = Well();
    examined.state.channel->expiry = now;
    auto const findings = sim::ChannelFindings(examined);
    FailureIn(findings, Stage::Channel);
    FailureIn(findings, Stage::UriStored);
}

TEST(Examination, ComparesTheStoredUriWithTheChannels)
{
    auto examined = Well();
    EXPECT_EQ(sim::ChannelFindings(examined).back().result, Result::Worked);
    examined.storedUri = L"https://another";
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::UriStored).what,
              "The URI in the app's settings is not that of the open channel.");
    examined.storedUri.reset();
    EXPECT_EQ(FailureIn(sim::ChannelFindings(examined), Stage::UriStored).what,
              "The app's settings hold no channel URI.");
}

TEST(Examination, SaysWhatHoldsTasksBackAndHowToEndIt)
{
    std::vector<std::pair<std::string, std::string>> said;
    for (auto const condition : {sim::Condition::AccessDenied, sim::Condition::BatterySaver, sim::Condition::NetworkOff,
                                 sim::Condition::LoggedOff, sim::Condition::Asleep})
    {
        auto const finding = FailureIn(sim::HeldBackFindings({{}, {}, {condition}}), Stage::Woken);
        said.emplace_back(finding.what, finding.advice);
    }
    EXPECT_EQ(said, (std::vector<std::pair<std::string, std::string>>{
                        {"Background access is denied: background tasks wait.", "End it: sim access allowed."},
                        {"The battery saver is on: background tasks wait.", "End it: sim battery normal."},
                        {"The device has no network: pushes are lost.", "End it: sim network on."},
                        {"Nobody is logged on: pushes are lost, background tasks wait.", "End it: sim logon."},
                        {"The device is asleep: pushes are lost, background tasks wait.", "End it: sim wake."}}));
}

TEST(Examination, SaysBehindWhatAPushWaits)
{
    auto const findings = sim::HeldBackFindings({{}, {{3, L"Push", L"instance 2 runs"}}, {}});
    ASSERT_EQ(findings.size(), 1u);
    auto const finding = FailureIn(findings, Stage::Woken);
    EXPECT_EQ(finding.what, "Wake 3 waits, for the task Push.");
    EXPECT_TRUE(finding.cause.ends_with("holds it back: instance 2 runs.")) << finding.cause;
}

TEST(Examination, HasTheClockAndTheNextTimer)
{
    auto examined = Well();
    examined.state.clock.minutesAhead = 1440;
    auto const text = [](std::int64_t time) { return sim::ToUtf8(sim::DateAndTimeText(sim::LocalMoment(time))); };
    EXPECT_EQ(sim::ClockFinding(examined.state).what, "The device's clock says " + text(now) +
                                                          ", 1440 minutes ahead; the timer is due at " +
                                                          text(now + day) + ".");
}

TEST(Examination, HasTheProcessesAndThoseThatAreLeftOver)
{
    auto examined = Well();
    examined.state.processes = {true, false, 2, 1};
    EXPECT_EQ(sim::ProcessFinding(examined).what,
              "The app runs; connections to its service: 1, desktop components: 2. No process is left over.");
    examined.state.processes.appIsSuspended = true;
    EXPECT_TRUE(sim::ProcessFinding(examined).what.starts_with("The app is suspended; "));
    examined.leftOver = {12, 34};
    auto const finding = FailureIn({sim::ProcessFinding(examined)}, Stage::Exit);
    EXPECT_EQ(finding.what, "Processes run that the device does not know: 12, 34.");
}
