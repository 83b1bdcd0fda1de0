#pragma once
#include "logging/LogTargetDefault.h"
#include "logging/Logger.h"
#include "service/AppLogHook.h"

namespace test
{

// Undoes SetUpLogging, whose objects are never freed in the application, so that each test starts without them. Declare
// it after the log's temporary folder, which cannot be removed while the log is open.
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
