#pragma once
#include "tests/support/Counting.h"
#include "tests/support/Failing.h"
#include "tests/support/WrappedCall.h"

#include <windows.h>

namespace test
{

// The functions of the system that tests replace. A program replaces those that it links with --wrap and defines with
// WRAP.
REPLACEABLE(AssignProcessCall, AssignProcessToJobObject);
REPLACEABLE(CloseHandleCall, CloseHandle);
REPLACEABLE(CloseKeyCall, RegCloseKey);
REPLACEABLE(CreateDirectoryCall, CreateDirectoryW);
REPLACEABLE(CreateEventCall, CreateEventW);
REPLACEABLE(CreateFileCall, CreateFileW);
REPLACEABLE(CreateJobCall, CreateJobObjectW);
REPLACEABLE(CreateMutexCall, CreateMutexW);
REPLACEABLE(DeleteCriticalSectionCall, DeleteCriticalSection);
REPLACEABLE(DeleteFileCall, DeleteFileW);
REPLACEABLE(EnterCriticalSectionCall, EnterCriticalSection);
REPLACEABLE(FindCloseCall, FindClose);
REPLACEABLE(FindFirstFileCall, FindFirstFileW);
REPLACEABLE(FindNextFileCall, FindNextFileW);
REPLACEABLE(GetDateFormatCall, GetDateFormatEx);
REPLACEABLE(GetFileAttributesCall, GetFileAttributesW);
REPLACEABLE(GetFileInformationCall, GetFileInformationByHandle);
REPLACEABLE(GetFileInformationExCall, GetFileInformationByHandleEx);
REPLACEABLE(GetFileSizeCall, GetFileSizeEx);
REPLACEABLE(GetLangIdCall, GetUserDefaultLangID);
REPLACEABLE(GetLocalTimeCall, GetLocalTime);
REPLACEABLE(GetModuleCall, GetModuleHandleW);
REPLACEABLE(GetProcAddressCall, GetProcAddress);
REPLACEABLE(GetSystemTimeCall, GetSystemTimePreciseAsFileTime);
REPLACEABLE(GetTempPathCall, GetTempPathW);
REPLACEABLE(GetTimeFormatCall, GetTimeFormatEx);
REPLACEABLE(GetUiLanguageCall, GetUserDefaultUILanguage);
REPLACEABLE(GetVersionCall, GetVersionExW);
REPLACEABLE(InitializeCriticalSectionCall, InitializeCriticalSection);
REPLACEABLE(LeaveCriticalSectionCall, LeaveCriticalSection);
REPLACEABLE(MoveFileCall, MoveFileExW);
REPLACEABLE(MultiByteToWideCharCall, MultiByteToWideChar);
REPLACEABLE(OpenKeyCall, RegOpenKeyExW);
REPLACEABLE(OpenMutexCall, OpenMutexW);
REPLACEABLE(QueryValueCall, RegQueryValueExW);
REPLACEABLE(ReadFileCall, ReadFile);
REPLACEABLE(RegGetValueCall, RegGetValueW);
REPLACEABLE(ReleaseMutexCall, ReleaseMutex);
REPLACEABLE(SetEndOfFileCall, SetEndOfFile);
REPLACEABLE(SetFileAttributesCall, SetFileAttributesW);
REPLACEABLE(SetFileInformationCall, SetFileInformationByHandle);
REPLACEABLE(SetFilePointerCall, SetFilePointerEx);
REPLACEABLE(SetJobInformationCall, SetInformationJobObject);
REPLACEABLE(SleepCall, Sleep);
REPLACEABLE(SubmitCall, TrySubmitThreadpoolCallback);
REPLACEABLE(VerifyVersionCall, VerifyVersionInfoW);
REPLACEABLE(WaitCall, WaitForSingleObject);
REPLACEABLE(WideCharToMultiByteCall, WideCharToMultiByte);
REPLACEABLE(WriteFileCall, WriteFile);

} // namespace test
