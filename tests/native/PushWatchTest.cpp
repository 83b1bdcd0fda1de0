#include "doctor/watches/PushWatch.h"

#include "tests/native/StoryLog.h"

#include <gtest/gtest.h>

using namespace test;
using enum doctor::Line;

namespace
{

// Pushes with one URI, and another URI behind them (line 17).
struct ChangedUriLog : StoryLog
{
    ChangedUriLog()
    {
        WriteStartForHelper(*this, 0);
        log().Write(1, 3, {ChannelUri, UriFound}); // 6
        WriteWoken(*this, 10, PushTask);           // 8 to 13
        uri = "https://host/?token=other";
        log().Write(20, 3, {ChannelUri, UriFound}); // 14
    }

  private:
    StoryLog& log() { return *this; }
};

} // namespace

TEST(PushWatch, RemarksThatNoPushCameSinceTheUriChanged)
{
    ChangedUriLog log;
    WriteWoken(log, day + 21, TimerTask); // 16 to 21
    EXPECT_EQ(RemarksOf(log.FinalReport()),
              Texts{"remark: No push has arrived since the channel's URI changed. 14..21"});
}

TEST(PushWatch, WaitsADay)
{
    ChangedUriLog log;
    log.Write(day + 20, 1, "a line");
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
}

TEST(PushWatch, IsContentWithAPush)
{
    ChangedUriLog log;
    WriteWoken(log, 30, PushTask);
    WriteWoken(log, 2 * day, TimerTask);
    EXPECT_EQ(RemarksOf(log.FinalReport()), Texts());
}

TEST(PushWatch, ExpectsNoPushWhereNoneCameBeforeOrTheUriIsTheSame)
{
    StoryLog none;
    WriteStartForHelper(none, 0);
    none.Write(1, 3, {ChannelUri, UriFound});
    none.uri = "https://host/?token=other";
    none.Write(2, 3, {ChannelUri, UriFound});
    none.Write(2 * day, 1, "a line");
    EXPECT_EQ(RemarksOf(none.FinalReport()), Texts());
    StoryLog same;
    WriteStartForHelper(same, 0);
    same.Write(1, 3, {ChannelUri, UriFound});
    WriteWoken(same, 10, PushTask);
    same.Write(20, 3, {ChannelUri, UriFound});
    same.Write(2 * day, 1, "a line");
    EXPECT_EQ(RemarksOf(same.FinalReport()), Texts());
}
