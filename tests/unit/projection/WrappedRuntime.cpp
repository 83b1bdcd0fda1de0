#include "tests/unit/projection/WrappedRuntime.h"

WRAP(GetObjectContextCall, CoGetObjectContext);
WRAP(IncrementMtaUsageCall, CoIncrementMTAUsage);
WRAP(TaskMemAllocCall, CoTaskMemAlloc);
WRAP(CreateEventCall, CreateEventW);
WRAP(GetActivationFactoryCall, RoGetActivationFactory);
WRAP(GetAgileReferenceCall, RoGetAgileReference);
WRAP(SubmitCall, TrySubmitThreadpoolCallback);
WRAP(CreateStringCall, WindowsCreateString);
WRAP(CreateStringReferenceCall, WindowsCreateStringReference);
WRAP(DuplicateStringCall, WindowsDuplicateString);
WRAP(PreallocateStringCall, WindowsPreallocateStringBuffer);
WRAP(PromoteStringCall, WindowsPromoteStringBuffer);
