#pragma once
#include <winrt/base.h>

namespace sim
{

// Stands for the result of a slot that the simulator does not serve: the call fails with E_NOTIMPL.
struct NotImplemented
{
    NotImplemented() { throw winrt::hresult_not_implemented(); }

    template <typename T>
    operator T() const
    {
        throw winrt::hresult_not_implemented();
    }
};

} // namespace sim
