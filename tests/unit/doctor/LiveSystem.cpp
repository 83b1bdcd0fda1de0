#include "tests/unit/doctor/LiveSystem.h"

WRAP(CreateFileCall, CreateFileW);
WRAP(GetFileAttributesCall, GetFileAttributesW);
WRAP(GetFileInformationCall, GetFileInformationByHandle);
WRAP(GetProcAddressCall, GetProcAddress);
WRAP(LoadLibraryCall, LoadLibraryExW);
WRAP(OpenMutexCall, OpenMutexW);
WRAP(SessionIdCall, ProcessIdToSessionId);
WRAP(WaitCall, WaitForSingleObject);
