#pragma once
#include "simulator/runtime/Runtime.h"

#include <atomic>
#include <functional>
#include <utility>
#include <winrt/base.h>

namespace sim
{

// A deferral of a class of the platform. To release it is not to complete it.
template <typename Class>
struct Deferral : winrt::implements<Deferral<Class>, winrt::default_interface<Class>>
{
    using class_type = Class;

    // completed: called at each completion; only the first one counts.
    explicit Deferral(std::function<void(bool isFirst)> completed) : m_completed(std::move(completed)) {}

    void Complete()
    {
        ThrowIfStruck(CallOf<Class>(L"Complete"));
        m_completed(!m_isCompleted.exchange(true));
    }

  private:
    std::function<void(bool isFirst)> const m_completed;
    std::atomic<bool> m_isCompleted = false;
};

} // namespace sim
