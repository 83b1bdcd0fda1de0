#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Record.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A time that has passed: once, or again and again. FreshnessTime: minutes. Too few are not refused before a task is
// registered.
using TimeTrigger = Record<AppModel::Background::TimeTrigger,
                           Interfaces<AppModel::Background::ITimeTrigger, AppModel::Background::IBackgroundTrigger>,
                           Property<"FreshnessTime", std::uint32_t>, Property<"OneShot", bool>>;

struct TimeTriggerFactory
    : Implements<TimeTriggerFactory, IActivationFactory, AppModel::Background::ITimeTriggerFactory>
{
    AppModel::Background::TimeTrigger Create(std::uint32_t freshnessTime, bool oneShot) const
    {
        return StruckByNull(L"TimeTrigger.Create") ? AppModel::Background::TimeTrigger(nullptr)
                                                   : winrt::make<TimeTrigger>(freshnessTime, oneShot);
    }
};

} // namespace sim
