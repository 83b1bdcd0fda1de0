#pragma once
#include "tests/support/WrappedCall.h"

#include <unknwn.h> // first: the projection then speaks classic COM, too
#include <winrt/base.h>

namespace test
{

// The type of a function of the system, without noexcept.
template <typename Result, typename... Arguments>
auto Import(Result (*)(Arguments...) noexcept) -> Result (*)(Arguments...);

// The functions of the system behind the projection that tests replace, with the projection's types.
REPLACEABLE_AS(GetObjectContextCall, CoGetObjectContext, decltype(Import(&winrt::impl::os::CoGetObjectContext)));
REPLACEABLE_AS(IncrementMtaUsageCall, CoIncrementMTAUsage, decltype(Import(&winrt::impl::os::CoIncrementMTAUsage)));
REPLACEABLE_AS(TaskMemAllocCall, CoTaskMemAlloc, decltype(Import(&winrt::impl::os::CoTaskMemAlloc)));
REPLACEABLE_AS(CreateEventCall, CreateEventW, decltype(Import(&winrt::impl::os::CreateEventW)));
REPLACEABLE_AS(GetActivationFactoryCall, RoGetActivationFactory,
               decltype(Import(&winrt::impl::os::RoGetActivationFactory)));
REPLACEABLE_AS(GetAgileReferenceCall, RoGetAgileReference, decltype(Import(&winrt::impl::os::RoGetAgileReference)));
REPLACEABLE_AS(SubmitCall, TrySubmitThreadpoolCallback,
               decltype(Import(&winrt::impl::os::TrySubmitThreadpoolCallback)));
REPLACEABLE_AS(CreateStringCall, WindowsCreateString, decltype(Import(&winrt::impl::os::WindowsCreateString)));
REPLACEABLE_AS(CreateStringReferenceCall, WindowsCreateStringReference,
               decltype(Import(&winrt::impl::os::WindowsCreateStringReference)));
REPLACEABLE_AS(DuplicateStringCall, WindowsDuplicateString, decltype(Import(&winrt::impl::os::WindowsDuplicateString)));
REPLACEABLE_AS(PreallocateStringCall, WindowsPreallocateStringBuffer,
               decltype(Import(&winrt::impl::os::WindowsPreallocateStringBuffer)));
REPLACEABLE_AS(PromoteStringCall, WindowsPromoteStringBuffer,
               decltype(Import(&winrt::impl::os::WindowsPromoteStringBuffer)));

} // namespace test
