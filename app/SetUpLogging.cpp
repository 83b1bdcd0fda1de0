#include "app/SetUpLogging.h"

#include "app/AppLog.h"
#include "logging/ApplicationLogFile.h"
#include "logging/LogTargetDefault.h"
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"
#include "service/LogSite.h"
#include "utils/Utf8.h"

void SetUpLogging()
{
    zant::g_defaultLogTarget = new zant::LogTargetDefault;
    zant::g_defaultLogTarget->ChooseLevel();
    zant::UseApplicationLogFile();
    zant::RegisterDefaultTarget(zant::GetLogTargetRegistry());

    zant::g_logger = new zant::Logger;
    zant::g_logger->product = zant::ToWide("ZEB").value_or(std::wstring());

    g_appLogHook = AppLog;
    LogSite(L"ZEBMain")
        .Info(L"****************************** VelmoNotificationCLient Started. *********************************");
}
