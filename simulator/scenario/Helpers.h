#pragma once
#include "simulator/base/Inbox.h"
#include "simulator/base/Moment.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The desktop helpers that a scenario has running, by name. They find the device as this process does, through the
// environment. One thread uses it.
class Helpers
{
  public:
    // What one of them printed, or that it has ended.
    struct Said
    {
        Moment time;
        std::wstring name;
        std::wstring line;
        std::optional<unsigned long> exitCode;
    };

    Helpers();
    Helpers(Helpers const&) = delete;
    Helpers& operator=(Helpers const&) = delete;
    ~Helpers(); // ends those that run

    // Throws Error when it cannot be started, or when one of that name runs.
    void Start(std::wstring const& name, std::vector<std::wstring> const& arguments);

    // Ends it from outside. Throws Error when none of that name runs.
    void Kill(std::wstring const& name);

    // Signalled while there is something to take.
    HANDLE Arrived() const noexcept { return m_said.Arrived(); }

    std::optional<Said> Take();

    // Those that were started and whose end was not taken yet.
    std::vector<std::wstring> Running() const;

  private:
    class Process;

    Inbox<Said> m_said;
    std::map<std::wstring, std::unique_ptr<Process>> m_processes;
};

} // namespace sim
