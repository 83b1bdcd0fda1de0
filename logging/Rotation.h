#pragma once
#include <string>
#include <windows.h>

namespace zant
{

// Whether the first nine bytes of the control file "pvq.trace" beside the log are "keeplogs" and nothing more.
bool KeepsCopies(std::wstring const& logPath);

// Copies the log to its dated name and, if that succeeds, empties it. The caller holds the lock between processes and
// has no open handle of the log.
void MoveContentToCopy(std::wstring const& logPath, SYSTEMTIME const& localNow);

// Deletes the copies that OldCopies selects, `localNow` being today. A file that cannot be deleted stays.
void DeleteOldCopies(std::wstring const& logPath, SYSTEMTIME const& localNow);

} // namespace zant
