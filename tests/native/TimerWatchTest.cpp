#include "doctor/watches/TimerWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

namespace
{

// The timer was registered in line 16 of 21, at 1.85 s.
struct RegisteredLog : StoryLog
{
    RegisteredLog()
    {
        WriteStartForHelper(*this, 0);
        WriteRegistration(*this, 1);
    }
};

} // namespace

TEST(TimerWatch, TellsOfMoreThanADayWithoutTheTimer)
{
    RegisteredLog log;
    WriteWoken(log, 20 * hour, PushTask);
    WriteWoken(log, 26 * hour, PushTask); // 28
    WriteWoken(log, 27 * hour, PushTask);
    EXPECT_EQ(FailuresOf(log.FinalReport()),
              Texts{"push or timer: failed: More than a day passed without the daily timer. 16..28"});
}

TEST(TimerWatch, IsContentWithATimerSoonAfterTheMachineWasOff)
{
    RegisteredLog log;
    log.Write(60 * hour, 1, {Started});
    WriteWoken(log, 60 * hour + 60, TimerTask);
    WriteWoken(log, 84 * hour, TimerTask);
    auto const report = log.ReportAsOf(85 * hour);
    EXPECT_EQ(FailuresOf(report), Texts());
    EXPECT_EQ(RemarksOf(report), Texts());
}

TEST(TimerWatch, WaitsAQuarterOfAnHourAfterTheMachineWasOff)
{
    auto const failures = [](double asOf) {
        RegisteredLog log;
        log.Write(60 * hour, 1, {Started, ProtocolActivated});
        auto const report = log.ReportAsOf(asOf);
        EXPECT_EQ(RemarksOf(report), Texts());
        return FailuresOf(report).size();
    };
    EXPECT_EQ(failures(60 * hour + 15 * 60), 0u);
    EXPECT_EQ(failures(60 * hour + 15 * 60 + 1), 1u);
    RegisteredLog log;
    log.Write(60 * hour, 1, {Started, ProtocolActivated});
    EXPECT_EQ(FailuresOf(log.FinalReport()), Texts()); // nothing can come any more
}

TEST(TimerWatch, TellsOfEachAbsenceOnce)
{
    RegisteredLog log;
    for (auto at = 26; at < 40; ++at)
    {
        WriteWoken(log, at * hour, PushTask);
    }
    WriteWoken(log, 41 * hour, TimerTask);
    WriteWoken(log, 67 * hour, PushTask);
    WriteWoken(log, 68 * hour, PushTask);
    EXPECT_EQ(FailuresOf(log.FinalReport()),
              Texts{"push or timer: failed: More than a day passed without the daily timer. (2) 16..112"});
}

TEST(TimerWatch, ExpectsNoTimerBehindARemoval)
{
    for (auto const removal : {RemovalRequested, ExitRequested})
    {
        RegisteredLog log;
        log.Write(3, 2, {removal});
        WriteWoken(log, 30 * hour, PushTask);
        WriteWoken(log, 31 * hour, PushTask);
        for (auto const& text : FailuresOf(log.FinalReport()))
        {
            EXPECT_FALSE(text.starts_with("push or timer")) << text;
        }
    }
}

TEST(TimerWatch, RemarksThatNothingAtAllHasWokenTheApp)
{
    auto const remarks = [](double asOf) {
        RegisteredLog log;
        return RemarksOf(log.ReportAsOf(asOf));
    };
    EXPECT_EQ(remarks(25 * hour + 1), Texts());
    EXPECT_EQ(remarks(25 * hour + 2),
              Texts{"remark: Not even the daily timer has woken the app since the log's last line, for more than a "
                    "day. 16..21"});
}
