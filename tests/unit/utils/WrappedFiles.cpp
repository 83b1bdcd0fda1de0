#include "tests/support/WrappedSystem.h"

WRAP(CreateFileCall, CreateFileW);
WRAP(CreateMutexCall, CreateMutexW);
WRAP(DeleteFileCall, DeleteFileW);
WRAP(GetFileAttributesCall, GetFileAttributesW);
WRAP(GetFileInformationCall, GetFileInformationByHandle);
WRAP(GetProcAddressCall, GetProcAddress);
WRAP(OpenMutexCall, OpenMutexW);
WRAP(RegGetValueCall, RegGetValueW);
WRAP(SetFileAttributesCall, SetFileAttributesW);
