#pragma once
#include <string>
#include <windows.h>

namespace zant
{

// Whether the control file "pvq.trace" beside the log says "keeplogs", and nothing after it, in its first nine bytes.
bool KeepsCopies(std::wstring const& logPath);

// Copies the log to its dated name and, if that succeeded, empties it. The caller holds the lock between processes
// and has no handle of the log open.
void MoveContentToCopy(std::wstring const& logPath, SYSTEMTIME const& localNow);

// Deletes what OldCopies decides against, today being the day of `localNow`. What cannot be deleted stays.
void DeleteOldCopies(std::wstring const& logPath, SYSTEMTIME const& localNow);

} // namespace zant
