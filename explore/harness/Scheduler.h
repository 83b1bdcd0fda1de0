#pragma once
#include "explore/harness/Fiber.h"
#include "explore/harness/Turn.h"

#include <functional>
#include <memory>
#include <vector>

namespace explore
{

// Runs processes, each a fiber, one call of one of them at a time. They meet twice: what they do before they first meet
// and after they meet again goes the ordinary way; in between each step is decided.
class Scheduler
{
  public:
    struct World
    {
        std::function<void(ProcessNumber)> onSwitch; // the process goes on
        // True: the fault ends the process that would have gone on.
        std::function<bool(FaultNumber, ProcessNumber)> onFault;
        std::function<bool()> onIdle; // each process waits: lets time pass; false when that helps none of them
        std::function<void(unsigned)> onMeeting; // the first, the second
    };

    enum class End
    {
        All, // each process has returned or was ended
        LeftOff,
        Stuck
    };

    explicit Scheduler(World world) : m_world(std::move(world)) {}

    void Add(std::function<void()> body);
    End Run(Decide const& decide);

    // The processes' side.

    // Returns when it is the process's turn, for which isReady has to be true, too.
    void Await(std::function<bool()> const& isReady);
    void Meet();

    // Whether the process has ended.
    bool HasEnded(ProcessNumber process) const { return m_processes[process].fiber == nullptr; }

  private:
    struct Process
    {
        std::unique_ptr<Fiber> fiber; // null: it has ended
        std::function<bool()> const* isReady = nullptr;
        unsigned meetings = 0;
    };

    void Resume(ProcessNumber process);
    unsigned Meetings() const;
    void FindReady();
    Decision Next(Decide const& decide);

    World m_world;
    std::vector<Process> m_processes;
    std::vector<ProcessNumber> m_ready;
    ProcessNumber m_running = 0;
    std::optional<ProcessNumber> m_last = {}; // none where they meet
    std::uint32_t m_step = 0;
    unsigned m_meetings = 0;
};

} // namespace explore
