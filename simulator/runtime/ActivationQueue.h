#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Activation.h"

#include <deque>
#include <mutex>
#include <optional>

namespace sim
{

// What waits for the main view's thread.
class ActivationQueue
{
  public:
    ActivationQueue();

    void Add(Activation activation);

    // Next gives nothing from now on, whatever still waits.
    void End();

    // Waits, serving calls to the thread's apartment. For one thread.
    std::optional<Activation> Next();

  private:
    // Whether the end or an activation is there; then `next` is what Next gives.
    bool TryTake(std::optional<Activation>& next);

    Handle m_changed;
    std::mutex m_mutex;
    std::deque<Activation> m_waiting;
    bool m_hasEnded = false;
};

} // namespace sim
