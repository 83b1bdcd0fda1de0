#include "utils/DeleteFile.h"

#include "utils/UtilsLog.h"

#include <windows.h>

namespace zant
{

namespace
{

constexpr wchar_t category[] = L"FileUtils";

// False when the file is not read-only: a second attempt would fail, too.
bool ClearReadOnly(std::wstring const& path) noexcept
{
    auto const attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0)
    {
        return false;
    }
    LogFromUtils(
        LogLevel::Debug, category,
        L"File '%s' is with read-only. Its attribute is: '%d'. UnSetting its read-only attr and retry deleting",
        path.c_str(), attributes);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL); // on failure the second attempt fails, too
    return true;
}

} // namespace

bool DeleteFileWithRetry(std::wstring const& path) noexcept
{
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES || DeleteFileW(path.c_str()))
    {
        return true;
    }
    auto error = GetLastError();
    if (error == ERROR_ACCESS_DENIED && ClearReadOnly(path))
    {
        if (DeleteFileW(path.c_str()))
        {
            return true;
        }
        error = GetLastError();
    }
    LogFromUtils(LogLevel::Error, category, L"Failed to delete file: '%s' LastError:%d", path.c_str(), error);
    return false;
}

} // namespace zant
