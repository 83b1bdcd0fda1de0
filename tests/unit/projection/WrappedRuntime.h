#pragma once
#include "tests/support/WrappedCall.h"

#include <unknwn.h> // first: the projection then speaks classic COM, too
#include <winrt/base.h>

namespace test
{

// The type of a function of the system, which is not told that it throws nothing.
template <typename Result, typename... Arguments>
auto Import(Result (*)(Arguments...) noexcept) -> Result (*)(Arguments...);

} // namespace test

// The functions of the system behind the projection that tests replace.
extern "C"
{
    extern decltype(test::Import(&winrt::impl::os::CoGetObjectContext)) __real___imp_CoGetObjectContext;
    extern decltype(test::Import(&winrt::impl::os::CoIncrementMTAUsage)) __real___imp_CoIncrementMTAUsage;
    extern decltype(test::Import(&winrt::impl::os::CoTaskMemAlloc)) __real___imp_CoTaskMemAlloc;
    extern decltype(test::Import(&winrt::impl::os::CreateEventW)) __real___imp_CreateEventW;
    extern decltype(test::Import(&winrt::impl::os::RoGetActivationFactory)) __real___imp_RoGetActivationFactory;
    extern decltype(test::Import(&winrt::impl::os::RoGetAgileReference)) __real___imp_RoGetAgileReference;
    extern decltype(test::Import(
        &winrt::impl::os::TrySubmitThreadpoolCallback)) __real___imp_TrySubmitThreadpoolCallback;
    extern decltype(test::Import(&winrt::impl::os::WindowsCreateString)) __real___imp_WindowsCreateString;
    extern decltype(test::Import(
        &winrt::impl::os::WindowsCreateStringReference)) __real___imp_WindowsCreateStringReference;
    extern decltype(test::Import(&winrt::impl::os::WindowsDuplicateString)) __real___imp_WindowsDuplicateString;
    extern decltype(test::Import(
        &winrt::impl::os::WindowsPreallocateStringBuffer)) __real___imp_WindowsPreallocateStringBuffer;
    extern decltype(test::Import(&winrt::impl::os::WindowsPromoteStringBuffer)) __real___imp_WindowsPromoteStringBuffer;
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
