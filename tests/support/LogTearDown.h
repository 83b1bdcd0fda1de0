#pragma once
#include "logging/LogTargetDefault.h"
#include "logging/Logger.h"
#include "service/AppLogHook.h"

namespace test
{

// What SetUpLogging makes belongs to the process and is never freed in the application; a test program starts each test
// without it. Declare this after the log's temporary folder, which cannot be removed while the log is open.
class LogTearDown
{
  public:
    LogTearDown() = default;
    LogTearDown(LogTearDown const&) = delete;
    LogTearDown& operator=(LogTearDown const&) = delete;

    ~LogTearDown()
    {
        if (zant::g_defaultLogTarget)
        {
            zant::g_defaultLogTarget->Close();
        }
        zant::g_defaultLogTarget = nullptr;
        zant::g_logger = nullptr;
        g_appLogHook = nullptr;
    }
};

} // namespace test
