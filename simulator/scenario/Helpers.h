#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Device.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The running desktop helpers of a scenario, by name. They find the device as this process does, through the
// environment, and print into files of the device. Not thread-safe.
class Helpers
{
  public:
    // A line that a helper has printed, or its end.
    struct Output
    {
        std::wstring name;
        std::wstring line;
        std::optional<unsigned long> exitCode;
        bool wasKilled = false;

        std::wstring Text() const { return exitCode ? L"ended with " + std::to_wstring(*exitCode) : line; }
    };

    explicit Helpers(Device const& device) : m_device(device) {}
    Helpers(Helpers const&) = delete;
    Helpers& operator=(Helpers const&) = delete;
    ~Helpers(); // ends the running ones

    // Throws Error when it cannot be started, or when one of that name runs.
    void Start(std::wstring const& name, std::vector<std::wstring> const& arguments);

    // Terminates it. Throws Error when none of that name runs.
    void Kill(std::wstring const& name);

    // The output since the last call.
    std::vector<Output> Take();

    // Those that were started and whose end Take has not returned yet.
    std::vector<std::wstring> Running() const;

  private:
    struct Process
    {
        Handle handle;
        std::wstring output;
        std::size_t taken = 0; // bytes of it
        bool isKilled = false;
    };

    static void TakeLines(std::wstring const& name, Process& process, std::vector<Output>& lines);

    Device const& m_device;
    std::map<std::wstring, Process> m_processes;
    unsigned m_started = 0;
};

} // namespace sim
