#include "doctor/verdict/ReportJson.h"

#include "tests/unit/doctor/SmallReport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace test;
using doctor::ReportJson;
using enum doctor::Line;

TEST(ReportJson, HasWhatTheTextHas)
{
    auto const json = ReportJson(SmallReport());
    EXPECT_EQ(json.find('\n'), json.npos);
    auto const object = nlohmann::json::parse(json);
    EXPECT_EQ(object["summary"], SmallReport().summary);
    EXPECT_EQ(object["verdict"], "failed");
    ASSERT_EQ(object["stages"].size(), 10u);
    auto const& launch = object["stages"][7];
    EXPECT_EQ(launch["stage"], "desktop component");
    EXPECT_EQ(launch["result"], "failed");
    EXPECT_EQ(launch["worked"], 1);
    EXPECT_EQ(launch["lastWorked"]["line"], 16);
    auto const& finding = launch["findings"].at(0);
    EXPECT_EQ(finding["what"], "The desktop component was not launched.");
    EXPECT_EQ(finding["result"], "failed");
    EXPECT_EQ(finding["count"], 1);
    EXPECT_TRUE(finding["cause"].get<std::string>().starts_with("Windows refused the launch"));
    EXPECT_TRUE(finding["advice"].get<std::string>().starts_with("Look whether "));
    nlohmann::json const evidence = {{"time", "2024-01-05 09:00:00.040"},
                                     {"file", "C:\\logs\\KZEB.log"},
                                     {"line", 11},
                                     {"message", MessageOf(LaunchForPush)}};
    EXPECT_EQ(finding["first"], evidence);
    EXPECT_EQ(finding["last"], evidence);
    EXPECT_EQ(object["remarks"].size(), 1u);
    EXPECT_EQ(object["machine"], (nlohmann::json{{"systemName", "Windows 11"},
                                                 {"systemVersion", "10.0.0"},
                                                 {"systemBuild", "22631"},
                                                 {"locale", "en_US"},
                                                 {"suiteVersion", ""}}));
    EXPECT_EQ(object["files"], nlohmann::json::array({{{"path", "C:\\logs\\KZEB.log"},
                                                       {"lines", 16},
                                                       {"others", 1},
                                                       {"damaged", 1},
                                                       {"first", "2024-01-05 08:59:59.000"},
                                                       {"last", "2024-01-05 09:01:00.510"}}}));
}

TEST(ReportJson, TakesBytesThatAreNoText)
{
    doctor::Report report;
    report.summary = "\xFF\x1b";
    EXPECT_EQ(nlohmann::json::parse(ReportJson(report))["summary"], "\uFFFD\x1b");
}

TEST(ReportJson, HasNoWholeChannelUri)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {ChannelRequested});
    log.Write(2, 3, {ChannelReceived, ChannelUri, UriNotFound});
    EXPECT_EQ(ReportJson(log.FinalReport()).find("https"), std::string::npos);
}
