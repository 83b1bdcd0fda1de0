#include "logging/CopyContent.h"

#include "logging/LogFile.h"

namespace zant
{

namespace
{

// The system deletes such a file also when the process ends.
bool DeleteOnClose(HANDLE file, bool isDeleted) noexcept
{
    FILE_DISPOSITION_INFO disposition = {static_cast<BOOLEAN>(isDeleted)};
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

// False when a read fails. Failed writes are ignored.
bool CopyBlocks(HANDLE from, HANDLE to) noexcept
{
    char block[4096];
    DWORD read = 0;
    do
    {
        if (!ReadFile(from, block, sizeof block, &read, nullptr))
        {
            return false;
        }
        DWORD written = 0;
        WriteFile(to, block, read, &written, nullptr);
    } while (read == sizeof block);
    SetEndOfFile(to); // cuts off the rest of an earlier copy
    return true;
}

} // namespace

bool CopyContent(std::wstring const& source, std::wstring const& destination) noexcept
{
    if (!EnsureNoLinks(destination))
    {
        return false;
    }
    UniqueHandle const from(CreateFileW(source.c_str(), GENERIC_READ | GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!from)
    {
        return false;
    }
    UniqueHandle to(CreateFileW(destination.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!to)
    {
        return false;
    }
    auto const isGuarded = DeleteOnClose(to.Get(), true);
    if (CopyBlocks(from.Get(), to.Get()))
    {
        return !isGuarded || DeleteOnClose(to.Get(), false);
    }
    to.Reset();
    DeleteFileW(destination.c_str()); // for file systems without deletion on close
    return false;
}

} // namespace zant
