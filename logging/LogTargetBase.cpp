#include "logging/LogTargetBase.h"

#include "logging/Folders.h"
#include "logging/LevelMarkers.h"

namespace zant
{

LogTargetBase::LogTargetBase()
{
    ChooseLevel();
    InitializeCriticalSection(&refLock);
}

LogTargetBase::~LogTargetBase()
{
    refCount = 0;
    DeleteCriticalSection(&refLock);
}

void LogTargetBase::ChooseLevel()
{
    auto const folder = TemporaryFolderPath();
    threshold = folder ? LevelFromMarkers(*folder, fileName) : LogLevel::Info;
}

void LogTargetBase::AddReference() noexcept
{
    EnterCriticalSection(&refLock);
    ++refCount;
    LeaveCriticalSection(&refLock);
}

} // namespace zant
