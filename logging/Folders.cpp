#include "logging/Folders.h"

#include <windows.h>

namespace zant
{

std::optional<std::wstring> TemporaryFolderPath()
{
    wchar_t path[MAX_PATH + 1]; // the maximum of GetTempPathW
    auto const length = GetTempPathW(static_cast<DWORD>(std::size(path)), path);
    if (length == 0 || length >= std::size(path))
    {
        return std::nullopt;
    }
    return std::wstring(path, length);
}

std::optional<std::wstring> Appended(std::wstring_view folder, std::wstring_view more)
{
    std::wstring result(folder);
    if (!folder.ends_with(L'\\'))
    {
        result += L'\\';
    }
    result += more;
    if (result.size() >= MAX_PATH)
    {
        return std::nullopt;
    }
    return result;
}

bool Exists(std::wstring const& path) noexcept
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// PathIsDirectoryW gives the same answer, but loads the shell's libraries at start-up, which takes longer than all of
// the logging.
bool IsFolder(std::wstring const& path) noexcept
{
    auto const attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CreateFolders(std::wstring const& path)
{
    // Parents first, ignoring failures: creating a drive's root or a folder without access fails although it exists.
    for (auto end = path.find(L'\\'); end != path.npos; end = path.find(L'\\', end + 1))
    {
        CreateDirectoryW(path.substr(0, end).c_str(), nullptr);
    }
    if (CreateDirectoryW(path.c_str(), nullptr))
    {
        return true;
    }
    auto const error = GetLastError();
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
}

std::optional<std::wstring> MakeTemporaryPath(std::wstring_view fileName)
{
    auto const folder = TemporaryFolderPath();
    return folder && CreateFolders(*folder) ? Appended(*folder, fileName) : std::nullopt;
}

} // namespace zant
