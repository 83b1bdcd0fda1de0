#pragma once
#include "tests/support/Failing.h"
#include "tests/support/WrappedCall.h"

#include <windows.h>

// Every function of the system that logging calls, to be replaced by tests.
extern "C"
{
    extern decltype(&CloseHandle) __real___imp_CloseHandle;
    extern decltype(&CreateDirectoryW) __real___imp_CreateDirectoryW;
    extern decltype(&CreateFileW) __real___imp_CreateFileW;
    extern decltype(&CreateMutexW) __real___imp_CreateMutexW;
    extern decltype(&DeleteFileW) __real___imp_DeleteFileW;
    extern decltype(&EnterCriticalSection) __real___imp_EnterCriticalSection;
    extern decltype(&FindClose) __real___imp_FindClose;
    extern decltype(&FindFirstFileW) __real___imp_FindFirstFileW;
    extern decltype(&FindNextFileW) __real___imp_FindNextFileW;
    extern decltype(&GetDateFormatEx) __real___imp_GetDateFormatEx;
    extern decltype(&GetFileAttributesW) __real___imp_GetFileAttributesW;
    extern decltype(&GetFileInformationByHandle) __real___imp_GetFileInformationByHandle;
    extern decltype(&GetFileSizeEx) __real___imp_GetFileSizeEx;
    extern decltype(&GetLocalTime) __real___imp_GetLocalTime;
    extern decltype(&GetSystemTimePreciseAsFileTime) __real___imp_GetSystemTimePreciseAsFileTime;
    extern decltype(&GetTempPathW) __real___imp_GetTempPathW;
    extern decltype(&GetTimeFormatEx) __real___imp_GetTimeFormatEx;
    extern decltype(&LeaveCriticalSection) __real___imp_LeaveCriticalSection;
    extern decltype(&MoveFileExW) __real___imp_MoveFileExW;
    extern decltype(&MultiByteToWideChar) __real___imp_MultiByteToWideChar;
    extern decltype(&OpenMutexW) __real___imp_OpenMutexW;
    extern decltype(&ReadFile) __real___imp_ReadFile;
    extern decltype(&ReleaseMutex) __real___imp_ReleaseMutex;
    extern decltype(&SetEndOfFile) __real___imp_SetEndOfFile;
    extern decltype(&SetFileInformationByHandle) __real___imp_SetFileInformationByHandle;
    extern decltype(&SetFilePointerEx) __real___imp_SetFilePointerEx;
    extern decltype(&WaitForSingleObject) __real___imp_WaitForSingleObject;
    extern decltype(&WideCharToMultiByte) __real___imp_WideCharToMultiByte;
    extern decltype(&WriteFile) __real___imp_WriteFile;
}

namespace test
{

using CloseHandleCall = WrappedCall<&__real___imp_CloseHandle>;
using CreateDirectoryCall = WrappedCall<&__real___imp_CreateDirectoryW>;
using CreateFileCall = WrappedCall<&__real___imp_CreateFileW>;
using CreateMutexCall = WrappedCall<&__real___imp_CreateMutexW>;
using DeleteFileCall = WrappedCall<&__real___imp_DeleteFileW>;
using EnterCriticalSectionCall = WrappedCall<&__real___imp_EnterCriticalSection>;
using FindCloseCall = WrappedCall<&__real___imp_FindClose>;
using FindFirstFileCall = WrappedCall<&__real___imp_FindFirstFileW>;
using FindNextFileCall = WrappedCall<&__real___imp_FindNextFileW>;
using GetDateFormatCall = WrappedCall<&__real___imp_GetDateFormatEx>;
using GetFileAttributesCall = WrappedCall<&__real___imp_GetFileAttributesW>;
using GetFileInformationCall = WrappedCall<&__real___imp_GetFileInformationByHandle>;
using GetFileSizeCall = WrappedCall<&__real___imp_GetFileSizeEx>;
using GetLocalTimeCall = WrappedCall<&__real___imp_GetLocalTime>;
using GetSystemTimeCall = WrappedCall<&__real___imp_GetSystemTimePreciseAsFileTime>;
using GetTempPathCall = WrappedCall<&__real___imp_GetTempPathW>;
using GetTimeFormatCall = WrappedCall<&__real___imp_GetTimeFormatEx>;
using LeaveCriticalSectionCall = WrappedCall<&__real___imp_LeaveCriticalSection>;
using MoveFileCall = WrappedCall<&__real___imp_MoveFileExW>;
using MultiByteToWideCharCall = WrappedCall<&__real___imp_MultiByteToWideChar>;
using OpenMutexCall = WrappedCall<&__real___imp_OpenMutexW>;
using ReadFileCall = WrappedCall<&__real___imp_ReadFile>;
using ReleaseMutexCall = WrappedCall<&__real___imp_ReleaseMutex>;
using SetEndOfFileCall = WrappedCall<&__real___imp_SetEndOfFile>;
using SetFileInformationCall = WrappedCall<&__real___imp_SetFileInformationByHandle>;
using SetFilePointerCall = WrappedCall<&__real___imp_SetFilePointerEx>;
using WaitCall = WrappedCall<&__real___imp_WaitForSingleObject>;
using WideCharToMultiByteCall = WrappedCall<&__real___imp_WideCharToMultiByte>;
using WriteFileCall = WrappedCall<&__real___imp_WriteFile>;

} // namespace test
