#include "tests/unit/projection/WrappedRuntime.h"

using namespace test;

extern "C"
{
    decltype(&CoGetObjectContext) __wrap___imp_CoGetObjectContext = &GetObjectContextCall::Entry;
    decltype(&CoIncrementMTAUsage) __wrap___imp_CoIncrementMTAUsage = &IncrementMtaUsageCall::Entry;
    decltype(&CoTaskMemAlloc) __wrap___imp_CoTaskMemAlloc = &TaskMemAllocCall::Entry;
    decltype(&CreateEventW) __wrap___imp_CreateEventW = &CreateEventCall::Entry;
    decltype(&RoGetActivationFactory) __wrap___imp_RoGetActivationFactory = &GetActivationFactoryCall::Entry;
    decltype(&RoGetAgileReference) __wrap___imp_RoGetAgileReference = &GetAgileReferenceCall::Entry;
    decltype(&TrySubmitThreadpoolCallback) __wrap___imp_TrySubmitThreadpoolCallback = &SubmitCall::Entry;
    decltype(&WindowsCreateString) __wrap___imp_WindowsCreateString = &CreateStringCall::Entry;
    decltype(&WindowsCreateStringReference) __wrap___imp_WindowsCreateStringReference =
        &CreateStringReferenceCall::Entry;
    decltype(&WindowsDuplicateString) __wrap___imp_WindowsDuplicateString = &DuplicateStringCall::Entry;
    decltype(&WindowsPreallocateStringBuffer) __wrap___imp_WindowsPreallocateStringBuffer =
        &PreallocateStringCall::Entry;
    decltype(&WindowsPromoteStringBuffer) __wrap___imp_WindowsPromoteStringBuffer = &PromoteStringCall::Entry;
}
