#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A time that has passed: once, or again and again.
struct TimeTrigger
    : Implements<TimeTrigger, AppModel::Background::ITimeTrigger, AppModel::Background::IBackgroundTrigger>
{
    using class_type = AppModel::Background::TimeTrigger;

    // freshnessTime: minutes. Too few are not refused before a task is registered.
    TimeTrigger(std::uint32_t freshnessTime, bool oneShot) : m_freshnessTime(freshnessTime), m_oneShot(oneShot) {}

    std::uint32_t FreshnessTime() const noexcept { return m_freshnessTime; }

    bool OneShot() const noexcept { return m_oneShot; }

  private:
    std::uint32_t m_freshnessTime;
    bool m_oneShot;
};

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
