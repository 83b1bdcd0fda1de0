#include "utils/Links.h"

#include "utils/ParentPath.h"

#include <new>
#include <windows.h>

namespace zant
{

namespace
{

bool IsReparsePoint(std::wstring const& path) noexcept
{
    auto const attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool HasLinkAbove(std::wstring path) noexcept
{
    for (auto before = path.size(); RemoveLastComponent(path) && path.size() < before; before = path.size())
    {
        if (IsReparsePoint(path))
        {
            return true;
        }
    }
    return false;
}

} // namespace

LinkCheck CheckLinks(std::wstring const& path, bool checkHardLinks) noexcept
try
{
    if (IsReparsePoint(path))
    {
        return LinkCheck::IsLink;
    }
    if (checkHardLinks && HasSeveralLinks(path))
    {
        return LinkCheck::SeveralLinks;
    }
    return HasLinkAbove(path) ? LinkCheck::ParentIsLink : LinkCheck::NoLink;
}
catch (std::bad_alloc const&)
{
    return LinkCheck::ParentIsLink;
}

bool HasSeveralLinks(std::wstring const& path) noexcept
{
    auto* const file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return false;
    }
    FILE_STANDARD_INFO information; // GetFileInformationByHandle would ask the volume, too
    if (!GetFileInformationByHandleEx(file, FileStandardInfo, &information, sizeof information))
    {
        // The handle stays open, on purpose, so no UniqueHandle owns it: until the process ends, no one can delete or
        // rename a file whose links are unknown.
        return false;
    }
    CloseHandle(file);
    return information.NumberOfLinks > 1;
}

} // namespace zant
