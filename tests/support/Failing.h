#pragma once
#include <windows.h>

namespace test
{

// A replacement that fails with this error of the system.
template <typename Result>
auto Failing(Result result, DWORD error)
{
    return [=](auto...) {
        SetLastError(error);
        return result;
    };
}

// Calls the system's function `skipped` times, fails once, then calls it again.
template <typename Result>
auto FailingAfter(int& skipped, Result result, DWORD error)
{
    return [=, &skipped](auto next, auto... arguments) {
        if (skipped-- == 0)
        {
            SetLastError(error);
            return result;
        }
        return static_cast<Result>(next(arguments...));
    };
}

} // namespace test
