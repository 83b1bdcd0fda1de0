#include "service/AppLogHook.h"

AppLogFunction g_appLogHook = nullptr;
