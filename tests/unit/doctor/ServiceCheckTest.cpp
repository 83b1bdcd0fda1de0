#include "doctor/live/ServiceCheck.h"

#include "tests/unit/doctor/FakeAppService.h"

#include <gtest/gtest.h>
#include <set>

using doctor::ConnectionStatus;
using doctor::ResponseStatus;
using doctor::Result;
using doctor::Stage;

namespace
{

class ServiceCheck : public testing::Test
{
  protected:
    doctor::Asked Ask() { return doctor::AskService(m_service, m_options); }

    // The finding with which the asking ends.
    doctor::Finding Failure()
    {
        auto const finding = Ask().findings.back();
        EXPECT_EQ(finding.result, Result::Failed);
        EXPECT_NE(finding.cause, "");
        EXPECT_NE(finding.advice, "");
        return finding;
    }

    test::FakeAppService m_service;
    doctor::LiveOptions m_options;
};

} // namespace

TEST_F(ServiceCheck, SaysThatAllIsWellAndShortensTheUri)
{
    auto const asked = Ask();
    EXPECT_EQ(asked.status, ConnectionStatus::Success);
    EXPECT_TRUE(asked.appRuns);
    std::vector<std::pair<Stage, std::string>> said;
    for (auto const& finding : asked.findings)
    {
        EXPECT_EQ(finding.result, Result::Worked);
        said.emplace_back(finding.stage, finding.what);
    }
    EXPECT_EQ(said, (std::vector<std::pair<Stage, std::string>>{
                        {Stage::StartUp, "The app's process runs."},
                        {Stage::Service, "The app service opens."},
                        {Stage::Channel, "The channel arrived in 40 ms."},
                        {Stage::UriStored,
                         "The app's settings hold its URI: https://db5p.notify.windows.com/?token=abcdef\u2026 ."}}));
    EXPECT_EQ(m_service.limits, (std::vector<std::chrono::milliseconds>(2, std::chrono::seconds(60))));
}

TEST_F(ServiceCheck, ShowsTheWholeUriOnRequest)
{
    m_options.hasFullUris = true;
    EXPECT_EQ(Ask().findings.back().what,
              "The app's settings hold its URI: https://db5p.notify.windows.com/?token=abcdefghijk .");
}

TEST_F(ServiceCheck, HasASentenceForEachRefusal)
{
    std::set<std::string> causes;
    for (auto const status : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 99})
    {
        m_service.status = static_cast<ConnectionStatus>(status);
        auto const finding = Failure();
        EXPECT_EQ(finding.stage, Stage::Service);
        EXPECT_TRUE(finding.what.starts_with("The app service does not open (AppServiceConnectionStatus"))
            << finding.what;
        EXPECT_TRUE(finding.what.ends_with(", " + std::to_string(status) + ").")) << finding.what;
        causes.insert(finding.cause);
    }
    EXPECT_EQ(causes.size(), 12u);
    EXPECT_EQ(m_service.limits.size(), 12u); // nobody asks behind a refusal
    m_service.status = ConnectionStatus::AppNotInstalled;
    EXPECT_EQ(Failure().cause, "The package is not installed.");
    EXPECT_EQ(Failure().advice, "Install it (simulator: sim register).");
    EXPECT_FALSE(Ask().appRuns);
}

TEST_F(ServiceCheck, SaysThatTheServiceDoesNotOpenInTime)
{
    m_service.status = std::nullopt;
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Service);
    EXPECT_EQ(finding.what, "The app service did not open within 60 s.");
    EXPECT_EQ(Ask().status, std::nullopt);
}

TEST_F(ServiceCheck, SaysThatThePlatformRefusesTheCall)
{
    m_service.openError = static_cast<std::int32_t>(0x80040154);
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Service);
    EXPECT_EQ(finding.what, "The platform does not let this program ask the app (REGDB_E_CLASSNOTREG, 0x80040154).");
    EXPECT_EQ(finding.cause, "This system has no app services.");
    EXPECT_EQ(Ask().status, std::nullopt);
    m_service.openError = 0;
    m_service.askError = static_cast<std::int32_t>(0x80000013);
    EXPECT_EQ(Failure().cause, "The connection closed before the call.");
    EXPECT_EQ(Ask().status, ConnectionStatus::Success);
    EXPECT_FALSE(Ask().appRuns);
}

TEST_F(ServiceCheck, SaysThatTheAppEndedInTheMiddle)
{
    m_service.answer.response = ResponseStatus::Failure;
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Service);
    EXPECT_EQ(finding.what,
              "The app did not answer the request for the channel (AppServiceResponseStatus.Failure, 1).");
    EXPECT_FALSE(Ask().appRuns);
}

TEST_F(ServiceCheck, SaysThatTheChannelDoesNotArrive)
{
    m_service.answer = {};
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Channel);
    EXPECT_EQ(finding.what, "The channel did not arrive within 60 s.");
    EXPECT_TRUE(Ask().appRuns);
}

TEST_F(ServiceCheck, SaysThatNoMessageCame)
{
    m_service.answer.message.reset();
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Channel);
    EXPECT_EQ(finding.what, "The app completed the request for the channel, but sent no message.");
}

TEST_F(ServiceCheck, SaysThatTheMessageHasNoUri)
{
    m_service.answer.message->uri.reset();
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Channel);
    EXPECT_EQ(finding.what, "The app answered without a channel URI.");
}

TEST_F(ServiceCheck, SaysThatAnotherMessageCame)
{
    m_service.answer.message->newMessage = L"RegisterBkgTaskDone";
    auto const finding = Failure();
    EXPECT_EQ(finding.stage, Stage::Service);
    EXPECT_EQ(finding.what, "The app answered with another message: RegisterBkgTaskDone.");
}

TEST_F(ServiceCheck, BelievesTheMessageOfARequestThatIsNotCompleted)
{
    m_service.answer.response.reset();
    m_service.answer.took = std::chrono::milliseconds(1540);
    EXPECT_EQ(Ask().findings.at(2).what, "The channel arrived in 1.5 s.");
}
