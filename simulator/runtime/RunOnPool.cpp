#include "simulator/runtime/RunOnPool.h"

#include <memory>
#include <windows.h>
#include <winrt/base.h>

namespace sim
{

namespace
{

void CALLBACK Run(PTP_CALLBACK_INSTANCE, void* context)
{
    std::unique_ptr<std::function<void()>> const function(static_cast<std::function<void()>*>(context));
    (*function)();
}

} // namespace

void RunOnPool(std::function<void()> function)
{
    auto context = std::make_unique<std::function<void()>>(std::move(function));
    winrt::check_bool(TrySubmitThreadpoolCallback(Run, context.get(), nullptr));
    static_cast<void>(context.release()); // Run has it from here
}

} // namespace sim
