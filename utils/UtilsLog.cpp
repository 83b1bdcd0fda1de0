#include "utils/UtilsLog.h"

namespace zant
{

LogFunction g_utilsLogHook = nullptr;
AbstractLogger* g_utilsLogger = nullptr;

} // namespace zant
