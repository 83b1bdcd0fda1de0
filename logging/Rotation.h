#pragma once
#include <string>
#include <windows.h>

namespace zant
{

// Whether the control file "pvq.trace" beside the log says "keeplogs", and nothing after it, in its first nine bytes.
bool KeepsCopies(std::wstring const& logPath);

// Moves the log to its dated name, which it returns; replaces nothing and moves through no link. Empty when the log
// stays where it is, to be appended to as it stands.
std::wstring SetAside(std::wstring const& logPath, SYSTEMTIME const& localNow);

// Copies the log to its dated name and, if that succeeded, empties it. The caller holds the lock between processes
// and has no handle of the log open.
void MoveContentToCopy(std::wstring const& logPath, SYSTEMTIME const& localNow);

// Deletes what OldCopies decides against, today being the day of `localNow`. What cannot be deleted stays.
void DeleteOldCopies(std::wstring const& logPath, SYSTEMTIME const& localNow);

} // namespace zant
