#include "doctor/verdict/ReportText.h"

#include "tests/unit/doctor/SmallReport.h"

#include <gtest/gtest.h>

using namespace test;
using doctor::ReportText;
using enum doctor::Line;

namespace
{

constexpr char smallText[] =
    R"(The first stage that failed: desktop component, once, at 2024-01-05 09:00:00.040; it has worked since. The desktop component was not launched.

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
                  Usual cause: Windows refused the launch: the file is missing in the package, a policy forbids it, or it did not start in time.
                  What to do: Look whether HOV\Tessaline.exe is in the package's folder and starts by hand; repair or reinstall the package.
failed          task completed     worked 1 time, last 2024-01-05 09:01:00.510 (KZEB.log:17)
                A background task was never completed.
                  2024-01-05 09:00:00.020  KZEB.log:9  Deferal to complete background task
                  Usual cause: The desktop component was not launched; the app completes the task only after that.
                  What to do: See the stage of the desktop component. Windows may hold back the tasks of an app that overruns its time.
not seen        exit

Remarks
  The log begins in the middle: what was before is not here.
    2024-01-05 08:59:59.000  KZEB.log:1  ******************************************************************************
    Usual cause: Its file was not sent along, or the app has deleted it: it keeps the copies of some days.
    What to do: Ask for all files that begin with KZEB.

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
                               "KZEB.log: 0 lines; the file is empty"))
        << text;
    log.WriteOther("other");
    EXPECT_TRUE(ReportText(log.FinalReport(), false).ends_with("; 1 not of the app; this is no log of the app"));
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

TEST(ReportText, HasNoWholeChannelUri)
{
    StoryLog log;
    WriteStartForHelper(log, 0);
    log.Write(1, 2, {ChannelRequested});
    log.Write(2, 3, {ChannelReceived, ChannelUri, UriNotFound});
    EXPECT_EQ(ReportText(log.FinalReport(), false).find("https"), std::string::npos);
}
