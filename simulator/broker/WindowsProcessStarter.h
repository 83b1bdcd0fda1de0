#pragma once
#include "simulator/platform/ProcessStarter.h"

#include <list>
#include <memory>
#include <mutex>

namespace sim
{

// Real processes; their ends are seen through their handles.
class WindowsProcessStarter : public ProcessStarter
{
  public:
    WindowsProcessStarter();
    ~WindowsProcessStarter() override;

    void Listen(Ended ended) override { m_ended = std::move(ended); }

    StartedProcess Start(ProcessRequest const& request) override;
    void Kill(unsigned long id, unsigned long exitCode) override;

  private:
    class Watch;

    Ended m_ended;
    std::mutex m_mutex; // over the next
    std::list<std::unique_ptr<Watch>> m_watches;
};

} // namespace sim
