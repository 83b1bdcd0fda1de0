#include "tests/unit/projection/WrappedRuntime.h"

using namespace test;

extern "C"
{
    decltype(__real___imp_CoGetObjectContext) __wrap___imp_CoGetObjectContext = &GetObjectContextCall::Entry;
    decltype(__real___imp_CoIncrementMTAUsage) __wrap___imp_CoIncrementMTAUsage = &IncrementMtaUsageCall::Entry;
    decltype(__real___imp_CoTaskMemAlloc) __wrap___imp_CoTaskMemAlloc = &TaskMemAllocCall::Entry;
    decltype(__real___imp_CreateEventW) __wrap___imp_CreateEventW = &CreateEventCall::Entry;
    decltype(__real___imp_RoGetActivationFactory) __wrap___imp_RoGetActivationFactory =
        &GetActivationFactoryCall::Entry;
    decltype(__real___imp_RoGetAgileReference) __wrap___imp_RoGetAgileReference = &GetAgileReferenceCall::Entry;
    decltype(__real___imp_TrySubmitThreadpoolCallback) __wrap___imp_TrySubmitThreadpoolCallback = &SubmitCall::Entry;
    decltype(__real___imp_WindowsCreateString) __wrap___imp_WindowsCreateString = &CreateStringCall::Entry;
    decltype(__real___imp_WindowsCreateStringReference) __wrap___imp_WindowsCreateStringReference =
        &CreateStringReferenceCall::Entry;
    decltype(__real___imp_WindowsDuplicateString) __wrap___imp_WindowsDuplicateString = &DuplicateStringCall::Entry;
    decltype(__real___imp_WindowsPreallocateStringBuffer) __wrap___imp_WindowsPreallocateStringBuffer =
        &PreallocateStringCall::Entry;
    decltype(__real___imp_WindowsPromoteStringBuffer) __wrap___imp_WindowsPromoteStringBuffer =
        &PromoteStringCall::Entry;
}
