#include "tests/unit/utils/WrappedFiles.h"

using namespace test;

extern "C"
{
    decltype(&CreateFileW) __wrap___imp_CreateFileW = &CreateFileCall::Entry;
    decltype(&CreateMutexW) __wrap___imp_CreateMutexW = &CreateMutexCall::Entry;
    decltype(&DeleteFileW) __wrap___imp_DeleteFileW = &DeleteFileCall::Entry;
    decltype(&GetFileAttributesW) __wrap___imp_GetFileAttributesW = &GetFileAttributesCall::Entry;
    decltype(&GetFileInformationByHandle) __wrap___imp_GetFileInformationByHandle = &GetFileInformationCall::Entry;
    decltype(&GetProcAddress) __wrap___imp_GetProcAddress = &GetProcAddressCall::Entry;
    decltype(&OpenMutexW) __wrap___imp_OpenMutexW = &OpenMutexCall::Entry;
    decltype(&RegGetValueW) __wrap___imp_RegGetValueW = &RegGetValueCall::Entry;
    decltype(&SetFileAttributesW) __wrap___imp_SetFileAttributesW = &SetFileAttributesCall::Entry;
}
