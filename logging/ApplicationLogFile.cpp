#include "logging/ApplicationLogFile.h"

#include "logging/Folders.h"
#include "logging/LogPath.h"
#include "logging/LogTargetDefault.h"

namespace zant
{

namespace
{

constexpr std::wstring_view folderName = L"Tessaline\\HOV";
constexpr std::wstring_view logName = L"KZEB.log";
static_assert(IsBareFileName(logName));

// On failure the target keeps the part of the path that could be built.
bool SetFilePath(LogTargetDefault& target)
{
    auto const temporary = TemporaryFolderPath();
    auto folder = temporary ? Appended(*temporary, folderName) : std::nullopt;
    if (!folder)
    {
        return false;
    }
    target.filePath = std::move(*folder);
    if (!IsFolder(target.filePath))
    {
        CreateFolders(target.filePath);
    }
    auto path = Appended(target.filePath, logName);
    if (!path)
    {
        return false;
    }
    target.filePath = std::move(*path);
    return true;
}

// Opens the log; creates it when missing.
bool TryOpen(LogTargetDefault& target)
{
    if (target.isOpen)
    {
        return target.OpenFile(target.file);
    }
    UniqueHandle probe;
    return target.OpenFile(probe);
}

} // namespace

bool UseApplicationLogFile()
{
    if (g_defaultLogTarget == nullptr)
    {
        return false;
    }
    auto& target = *g_defaultLogTarget;
    target.enabled = SetFilePath(target);
    if (target.enabled)
    {
        target.file.Reset();
        target.fileName = FileNameOf(target.filePath);
        target.enabled = TryOpen(target);
    }
    return target.enabled;
}

} // namespace zant
