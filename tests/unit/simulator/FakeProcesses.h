#pragma once
#include "simulator/platform/ProcessStarter.h"

#include <stdexcept>
#include <vector>

// Processes that are only written down; the test says when they end.
class FakeProcesses : public sim::ProcessStarter
{
  public:
    static constexpr unsigned long firstId = 100;

    void Listen(Ended ended) override { m_ended = std::move(ended); }

    sim::StartedProcess Start(sim::ProcessRequest const& request) override
    {
        if (exception)
        {
            throw std::runtime_error(exception);
        }
        if (error != 0)
        {
            return {error, 0};
        }
        started.push_back(request);
        return {0, IdOf(started.size() - 1)};
    }

    void Kill(unsigned long id, unsigned long exitCode) override
    {
        killed.push_back(id);
        killCode = exitCode;
    }

    bool Suspend(unsigned long id) override
    {
        suspended.push_back(id);
        return canSuspend;
    }

    void Resume(unsigned long id) override { resumed.push_back(id); }

    static unsigned long IdOf(std::size_t index) { return firstId + static_cast<unsigned long>(index); }

    void End(unsigned long id, unsigned long exitCode) const { m_ended(id, exitCode); }

    unsigned long error = 0;         // the next starts fail with it
    char const* exception = nullptr; // the next starts throw it
    unsigned long killCode = 0;
    bool canSuspend = true;
    std::vector<sim::ProcessRequest> started;
    std::vector<unsigned long> killed;
    std::vector<unsigned long> suspended;
    std::vector<unsigned long> resumed;

  private:
    Ended m_ended;
};
