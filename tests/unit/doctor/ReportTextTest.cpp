#include "doctor/verdict/ReportText.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace test;
using doctor::ReportJson;
using doctor::ReportText;
using enum doctor::Line;

namespace
{

// A log with a header, a launch that is refused, and one that works.
doctor::Report SmallReport()
{
    StoryLog log(L"C:\\logs\\KZEB.log");
    log.Write(-1, 1, {HeaderEdge});
    log.Write(-1, 1, "OS Build Version: 22631");
    log.Write(-1, 1, "OS Locale: en_US");
    log.Write(-1, 1, "OS Name: Windows 11");
    log.Write(-1, 1, "OS Version: 10.0.0");
    log.Write(0, 1, {Started});
    log.WriteOther("other", true);
    log.Write(0.01, 1, {BackgroundActivated, TaskDeferral, PushTask, LaunchForPush});
    WriteWoken(log, 60, PushTask);
    return log.FinalReport();
}

constexpr char smallText[] =
    R"(The first stage that failed: desktop component. The desktop component was not launched. It happened once, at 2024-01-05 09:00:00.040. It has worked since.

worked          package            worked 1 time, last 2024-01-05 09:00:00.000 (KZEB.log:6)
worked          start-up           worked 1 time, last 2024-01-05 09:00:00.010 (KZEB.log:8)
not seen        service
not seen        channel
not seen        URI stored
not seen        tasks registered
worked          push or timer      worked 2 times, last 2024-01-05 09:01:00.020 (KZEB.log:14)
failed          desktop component  worked 1 time, last 2024-01-05 09:01:00.500 (KZEB.log:16)
                The desktop component was not launched.
                  2024-01-05 09:00:00.040  KZEB.log:11  Going to launch full trust app for new notification invocation 
                  Usually: Windows refused the launch: the file is missing in the package, a policy forbids it, or it did not start in time.
                  Next: Look whether HOV\Tessaline.exe is in the package's folder and starts by hand; repair or reinstall the package.
failed          task completed     worked 1 time, last 2024-01-05 09:01:00.510 (KZEB.log:17)
                A background task was never completed.
                  2024-01-05 09:00:00.020  KZEB.log:9  Deferal to complete background task
                  Usually: The desktop component was not launched; the app completes the task only after that.
                  Next: See the stage of the desktop component. Windows may hold back the tasks of an app that overruns its time.
not seen        exit

Remarks
  The log begins in the middle: what was before is not here.
    2024-01-05 08:59:59.000  KZEB.log:1  ******************************************************************************
    Usually: Its file was not sent along, or the app has deleted it: it keeps the copies of some days.
    Next: Ask for all files that begin with KZEB.

Windows 11 10.0.0 (build 22631), locale en_US, no version of the suite
C:\logs\KZEB.log: 16 lines, 2024-01-05 08:59:59.000 to 2024-01-05 09:01:00.510; 1 not of the app; 1 damaged)";

std::string WithoutColours(std::string text)
{
    for (auto begin = text.find('\x1b'); begin != text.npos; begin = text.find('\x1b'))
    {
        text.erase(begin, text.find('m', begin) + 1 - begin);
    }
    return text;
}

} // namespace

TEST(ReportText, HasSummaryStagesRemarksMachineAndFiles)
{
    EXPECT_EQ(ReportText(SmallReport(), false), smallText);
}

TEST(ReportText, ColoursTheResultsForATerminal)
{
    auto const text = ReportText(SmallReport(), true);
    EXPECT_EQ(WithoutColours(text), smallText);
    EXPECT_NE(text.find("\n\x1b[32mworked          \x1b[0mpackage "), text.npos);
    EXPECT_NE(text.find("\n\x1b[31mfailed          \x1b[0mdesktop component"), text.npos);
    EXPECT_NE(text.find("\n\x1b[2mnot seen        \x1b[0mexit"), text.npos);
    StoryLog open;
    open.Write(0, 1, {Started});
    EXPECT_NE(ReportText(open.ReportAsOf(1), true).find("\n\x1b[33mcannot be told  \x1b[0mstart-up"), text.npos);
}

TEST(ReportText, SaysHowOftenAFailureHappenedAndWhereItBeganAndEnded)
{
    StoryLog log;
    log.Write(0, 1, {Started, ProtocolActivated, ExitRequested, ExitNotAcknowledged});
    log.Write(1, 1, {ExitRequested, ExitNotAcknowledged});
    EXPECT_NE(ReportText(log.FinalReport(), false)
                  .find("\n                The reply was not sent to the helper. (2 times)\n"
                        "                  2024-01-05 09:00:00.020  KZEB.log:3  RequestReceived to exit Velmo "
                        "Notification Client\n"
                        "                  2024-01-05 09:00:01.010  KZEB.log:6  Error in sending ack still closing\n"),
              std::string::npos);
}

TEST(ReportText, SaysThatAFileIsNoLogAndThatThereIsNoHeader)
{
    StoryLog log;
    auto const text = ReportText(log.FinalReport(), false);
    EXPECT_TRUE(text.starts_with("There is no line of the app.\n\nnot seen        package\n")) << text;
    EXPECT_TRUE(text.ends_with("\n\nWindows, locale and suite: no header in the log; the first rotation writes one\n"
                               "KZEB.log: 0 lines; this is no log of the app"))
        << text;
}

TEST(ReportText, HasNoFilesWhereNoneWasRead)
{
    doctor::Report report;
    report.summary = "Nothing failed.";
    EXPECT_TRUE(ReportText(report, false).ends_with("package")) << ReportText(report, false);
}

TEST(ReportText, HasNoControlCharacters)
{
    StoryLog log(L"a\x1b[2J.log");
    log.Write(0, 1, "OS Name: Windows\x1b[2J\r\n\x07");
    log.Write(0, 1,
              "OS Locale: \xC2\x9B"
              "2J");
    for (auto const isColoured : {false, true})
    {
        auto const text = WithoutColours(ReportText(log.FinalReport(), isColoured));
        EXPECT_EQ(text.find_first_of("\x1b\r\x07\x9B"), text.npos) << text;
        EXPECT_NE(text.find("Windows\uFFFD[2J\uFFFD\uFFFD\uFFFD "), text.npos) << text;
    }
}

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

TEST(ReportJson, AndTextHaveNoWholeChannelUri)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {ChannelRequested});
    log.Write(2, 3, {ChannelReceived, ChannelUri, UriNotFound});
    auto const report = log.FinalReport();
    EXPECT_EQ(ReportText(report, false).find("https"), std::string::npos);
    EXPECT_EQ(ReportJson(report).find("https"), std::string::npos);
}
