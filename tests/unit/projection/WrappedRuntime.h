#pragma once
#include "tests/support/WrappedCall.h"

#include <winrt/base.h>

// The functions of the system behind the projection that tests replace.
extern "C"
{
    extern decltype(&CoGetObjectContext) __real___imp_CoGetObjectContext;
    extern decltype(&CoIncrementMTAUsage) __real___imp_CoIncrementMTAUsage;
    extern decltype(&CoTaskMemAlloc) __real___imp_CoTaskMemAlloc;
    extern decltype(&CreateEventW) __real___imp_CreateEventW;
    extern decltype(&RoGetActivationFactory) __real___imp_RoGetActivationFactory;
    extern decltype(&RoGetAgileReference) __real___imp_RoGetAgileReference;
    extern decltype(&TrySubmitThreadpoolCallback) __real___imp_TrySubmitThreadpoolCallback;
    extern decltype(&WindowsCreateString) __real___imp_WindowsCreateString;
    extern decltype(&WindowsCreateStringReference) __real___imp_WindowsCreateStringReference;
    extern decltype(&WindowsDuplicateString) __real___imp_WindowsDuplicateString;
    extern decltype(&WindowsPreallocateStringBuffer) __real___imp_WindowsPreallocateStringBuffer;
    extern decltype(&WindowsPromoteStringBuffer) __real___imp_WindowsPromoteStringBuffer;
}

namespace test
{

using GetObjectContextCall = WrappedCall<&__real___imp_CoGetObjectContext>;
using IncrementMtaUsageCall = WrappedCall<&__real___imp_CoIncrementMTAUsage>;
using TaskMemAllocCall = WrappedCall<&__real___imp_CoTaskMemAlloc>;
using CreateEventCall = WrappedCall<&__real___imp_CreateEventW>;
using GetActivationFactoryCall = WrappedCall<&__real___imp_RoGetActivationFactory>;
using GetAgileReferenceCall = WrappedCall<&__real___imp_RoGetAgileReference>;
using SubmitCall = WrappedCall<&__real___imp_TrySubmitThreadpoolCallback>;
using CreateStringCall = WrappedCall<&__real___imp_WindowsCreateString>;
using CreateStringReferenceCall = WrappedCall<&__real___imp_WindowsCreateStringReference>;
using DuplicateStringCall = WrappedCall<&__real___imp_WindowsDuplicateString>;
using PreallocateStringCall = WrappedCall<&__real___imp_WindowsPreallocateStringBuffer>;
using PromoteStringCall = WrappedCall<&__real___imp_WindowsPromoteStringBuffer>;

} // namespace test
