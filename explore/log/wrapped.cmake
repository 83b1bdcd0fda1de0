# The calls that WrappedSystem.cpp replaces.
set(explore_log_wrapped CloseHandle CreateDirectoryW CreateFileW CreateMutexW DeleteFileW FindClose FindFirstFileW
    FindNextFileW GetDateFormatEx GetFileAttributesW GetFileInformationByHandleEx GetFileSizeEx GetLocalTime GetModuleHandleW
    GetSystemTimePreciseAsFileTime GetTempPathW GetTimeFormatEx InitializeCriticalSection MoveFileExW OpenMutexW ReadFile
    RegGetValueW RegOpenKeyExW ReleaseMutex SetEndOfFile SetFileAttributesW SetFileInformationByHandle SetFilePointerEx
    WaitForSingleObject WriteFile)
