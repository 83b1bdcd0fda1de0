#include "doctor/cli/LocalNow.h"

#include <windows.h>

namespace doctor
{

LogTime LocalNow()
{
    using namespace std::chrono;
    SYSTEMTIME local;
    GetLocalTime(&local);
    return local_days(year(local.wYear) / local.wMonth / local.wDay) + hours(local.wHour) + minutes(local.wMinute) +
           seconds(local.wSecond) + milliseconds(local.wMilliseconds);
}

} // namespace doctor
