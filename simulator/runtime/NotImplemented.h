#pragma once
#include <winrt/base.h>

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

inline constexpr auto notImplemented = static_cast<std::int32_t>(0x80004001); // E_NOTIMPL

using NotImplemented = Failing<notImplemented>;

} // namespace sim
