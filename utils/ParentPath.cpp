#include "utils/ParentPath.h"

#include "utils/WideScan.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shlwapi.h>

namespace zant
{

// Uses a buffer of the documented length of the shell's function: Wine's reads one character beyond the end of "C:".
bool RemoveLastComponent(std::wstring& path) noexcept
{
    wchar_t buffer[MAX_PATH] = {};
    auto const length = path.find_last_not_of(L'\\') + 1; // without any other character: npos + 1 is 0
    if (length >= std::size(buffer))
    {
        return false;
    }
    path.copy(buffer, length);
    if (!PathRemoveFileSpecW(buffer))
    {
        return false;
    }
    path.resize(ViewOf(buffer).size());
    return true;
}

} // namespace zant
