#include "tests/support/WrappedSystem.h"

WRAP(CreateFileCall, CreateFileW);
WRAP(CreateMutexCall, CreateMutexW);
WRAP(DeleteFileCall, DeleteFileW);
WRAP(GetFileAttributesCall, GetFileAttributesW);
WRAP(GetFileInformationExCall, GetFileInformationByHandleEx);
WRAP(GetProcAddressCall, GetProcAddress);
WRAP(OpenMutexCall, OpenMutexW);
WRAP(RegGetValueCall, RegGetValueW);
WRAP(SetFileAttributesCall, SetFileAttributesW);
