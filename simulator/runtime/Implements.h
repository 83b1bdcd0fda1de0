#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/base.h>
#include <winrt/defaults.h>

namespace sim
{

// Stands for the result of a member that fails, of any type.
template <std::int32_t Result>
struct Failing
{
    Failing() { winrt::throw_hresult(Result); }

    template <typename T>
    operator T() const
    {
        winrt::throw_hresult(Result);
    }
};

using NotImplemented = Failing<static_cast<std::int32_t>(0x80004001)>; // E_NOTIMPL

// winrt::implements for a class that serves a part of its interfaces: D declares the members that it serves, each other
// one is a call of Member with its name and its arguments, and so of Default. It fails with E_NOTIMPL where D has
// neither of its own.
template <typename D, typename... I>
struct Implements // NOLINT(bugprone-crtp-constructor-accessibility): as winrt::implements
    : winrt::implements<D, I...>,
      winrt::impl::defaults<D, I>...
{
    template <winrt::impl::member_name Name>
    decltype(auto) Member(auto&... arguments) const
    {
        return static_cast<D const&>(*this).Default(arguments...);
    }

    static NotImplemented Default(auto const&...) { return {}; }

    static NotImplemented ActivateInstance() { return {}; }
};

} // namespace sim
