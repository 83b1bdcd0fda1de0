#pragma once
#include "simulator/broker/ProcessStarter.h"

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

    StartedProcess Start(ProcessRequest const& request, Ended ended) override;
    void Kill(unsigned long id, unsigned long exitCode) override;

  private:
    class Watch;

    std::mutex m_mutex;
    std::list<std::unique_ptr<Watch>> m_watches;
};

} // namespace sim
