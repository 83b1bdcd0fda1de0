#include "doctor/live/LookAtMachine.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/FakeAppService.h"
#include "tests/unit/doctor/LiveSystem.h"

#include <gtest/gtest.h>

using doctor::Result;
using doctor::Stage;

TEST(LookAtMachine, TellsEachConcernInTheOrderOfTheStages)
{
    test::SystemFunctions const none;
    test::OpenMutexCall const absent(test::Failing<HANDLE>(nullptr, ERROR_FILE_NOT_FOUND));
    test::TemporaryFolder const folder;
    test::FakeAppService service;
    doctor::LiveOptions options;
    options.log = folder / L"KZEB.log";
    std::vector<std::pair<Stage, Result>> found;
    for (auto const& finding : doctor::LookAtMachine(options, service))
    {
        found.emplace_back(finding.stage, finding.result);
    }
    EXPECT_EQ(found, (std::vector<std::pair<Stage, Result>>{{Stage::Package, Result::Worked},
                                                            {Stage::StartUp, Result::Worked},       // the process
                                                            {Stage::StartUp, Result::Failed},       // the log
                                                            {Stage::StartUp, Result::CannotBeTold}, // its mutex
                                                            {Stage::Service, Result::Worked},
                                                            {Stage::Channel, Result::Worked},
                                                            {Stage::UriStored, Result::Worked},
                                                            {Stage::ComponentLaunched, Result::CannotBeTold}}));
}
