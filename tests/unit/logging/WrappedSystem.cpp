#include "tests/unit/logging/WrappedSystem.h"

using namespace test;

extern "C"
{
    decltype(&CloseHandle) __wrap___imp_CloseHandle = &CloseHandleCall::Entry;
    decltype(&CreateDirectoryW) __wrap___imp_CreateDirectoryW = &CreateDirectoryCall::Entry;
    decltype(&CreateFileW) __wrap___imp_CreateFileW = &CreateFileCall::Entry;
    decltype(&CreateMutexW) __wrap___imp_CreateMutexW = &CreateMutexCall::Entry;
    decltype(&DeleteFileW) __wrap___imp_DeleteFileW = &DeleteFileCall::Entry;
    decltype(&EnterCriticalSection) __wrap___imp_EnterCriticalSection = &EnterCriticalSectionCall::Entry;
    decltype(&FindClose) __wrap___imp_FindClose = &FindCloseCall::Entry;
    decltype(&FindFirstFileW) __wrap___imp_FindFirstFileW = &FindFirstFileCall::Entry;
    decltype(&FindNextFileW) __wrap___imp_FindNextFileW = &FindNextFileCall::Entry;
    decltype(&GetDateFormatEx) __wrap___imp_GetDateFormatEx = &GetDateFormatCall::Entry;
    decltype(&GetFileAttributesW) __wrap___imp_GetFileAttributesW = &GetFileAttributesCall::Entry;
    decltype(&GetFileInformationByHandle) __wrap___imp_GetFileInformationByHandle = &GetFileInformationCall::Entry;
    decltype(&GetFileSizeEx) __wrap___imp_GetFileSizeEx = &GetFileSizeCall::Entry;
    decltype(&GetLocalTime) __wrap___imp_GetLocalTime = &GetLocalTimeCall::Entry;
    decltype(&GetSystemTimePreciseAsFileTime) __wrap___imp_GetSystemTimePreciseAsFileTime = &GetSystemTimeCall::Entry;
    decltype(&GetTempPathW) __wrap___imp_GetTempPathW = &GetTempPathCall::Entry;
    decltype(&GetTimeFormatEx) __wrap___imp_GetTimeFormatEx = &GetTimeFormatCall::Entry;
    decltype(&LeaveCriticalSection) __wrap___imp_LeaveCriticalSection = &LeaveCriticalSectionCall::Entry;
    decltype(&MoveFileExW) __wrap___imp_MoveFileExW = &MoveFileCall::Entry;
    decltype(&MultiByteToWideChar) __wrap___imp_MultiByteToWideChar = &MultiByteToWideCharCall::Entry;
    decltype(&OpenMutexW) __wrap___imp_OpenMutexW = &OpenMutexCall::Entry;
    decltype(&ReadFile) __wrap___imp_ReadFile = &ReadFileCall::Entry;
    decltype(&ReleaseMutex) __wrap___imp_ReleaseMutex = &ReleaseMutexCall::Entry;
    decltype(&SetEndOfFile) __wrap___imp_SetEndOfFile = &SetEndOfFileCall::Entry;
    decltype(&SetFileInformationByHandle) __wrap___imp_SetFileInformationByHandle = &SetFileInformationCall::Entry;
    decltype(&SetFilePointerEx) __wrap___imp_SetFilePointerEx = &SetFilePointerCall::Entry;
    decltype(&WaitForSingleObject) __wrap___imp_WaitForSingleObject = &WaitCall::Entry;
    decltype(&WideCharToMultiByte) __wrap___imp_WideCharToMultiByte = &WideCharToMultiByteCall::Entry;
    decltype(&WriteFile) __wrap___imp_WriteFile = &WriteFileCall::Entry;
}
