#pragma once
#include "simulator/runtime/Record.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A time that has passed: once, or again and again. FreshnessTime: minutes. Too few are not refused before a task is
// registered.
using TimeTrigger =
    Record<Background::TimeTrigger, Interfaces<Background::ITimeTrigger, Background::IBackgroundTrigger>,
           Property<"FreshnessTime", std::uint32_t>, Property<"OneShot", bool>>;

struct TimeTriggerFactory : Implements<TimeTriggerFactory, IActivationFactory, Background::ITimeTriggerFactory>
{
    Background::TimeTrigger Create(std::uint32_t freshnessTime, bool oneShot) const
    {
        return StruckByNull(L"TimeTrigger.Create") ? Background::TimeTrigger(nullptr)
                                                   : winrt::make<TimeTrigger>(freshnessTime, oneShot);
    }
};

} // namespace sim
