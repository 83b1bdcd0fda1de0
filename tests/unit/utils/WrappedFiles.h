#pragma once
#include "tests/support/Failing.h"
#include "tests/support/WrappedCall.h"

// The functions of the system that the file utilities call, to be replaced by tests.
extern "C"
{
    extern decltype(&CreateFileW) __real___imp_CreateFileW;
    extern decltype(&CreateMutexW) __real___imp_CreateMutexW;
    extern decltype(&DeleteFileW) __real___imp_DeleteFileW;
    extern decltype(&GetFileAttributesW) __real___imp_GetFileAttributesW;
    extern decltype(&GetFileInformationByHandle) __real___imp_GetFileInformationByHandle;
    extern decltype(&GetProcAddress) __real___imp_GetProcAddress;
    extern decltype(&OpenMutexW) __real___imp_OpenMutexW;
    extern decltype(&RegGetValueW) __real___imp_RegGetValueW;
    extern decltype(&SetFileAttributesW) __real___imp_SetFileAttributesW;
}

namespace test
{

using CreateFileCall = WrappedCall<&__real___imp_CreateFileW>;
using CreateMutexCall = WrappedCall<&__real___imp_CreateMutexW>;
using DeleteFileCall = WrappedCall<&__real___imp_DeleteFileW>;
using GetFileAttributesCall = WrappedCall<&__real___imp_GetFileAttributesW>;
using GetFileInformationCall = WrappedCall<&__real___imp_GetFileInformationByHandle>;
using GetProcAddressCall = WrappedCall<&__real___imp_GetProcAddress>;
using OpenMutexCall = WrappedCall<&__real___imp_OpenMutexW>;
using RegGetValueCall = WrappedCall<&__real___imp_RegGetValueW>;
using SetFileAttributesCall = WrappedCall<&__real___imp_SetFileAttributesW>;

} // namespace test
