#pragma once
#include "tests/native/StoryLog.h"

namespace test
{

// A log with a header, a launch that is refused, and one that works.
inline doctor::Report SmallReport()
{
    using enum doctor::Line;
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

} // namespace test
