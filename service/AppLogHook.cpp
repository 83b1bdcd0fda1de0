#include "service/AppLogHook.h"

zant::LogFunction g_appLogHook = nullptr;
