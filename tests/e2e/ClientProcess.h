#pragma once
#include "simulator/base/Handle.h"

#include <string>
#include <string_view>

namespace test
{

// A service_client, spoken to in lines.
class ClientProcess
{
  public:
    // Returns when it is ready; the test fails when it cannot be started. messages: the name of a semaphore, which
    // it releases for each message that comes.
    explicit ClientProcess(std::wstring const& messages);
    ClientProcess(ClientProcess&&) noexcept = default;
    ClientProcess& operator=(ClientProcess&&) = delete;
    ~ClientProcess();

    void Say(std::string_view line) const;

    // What it answers to a line, waited for; empty when it has ended.
    std::string Answer() const;

    std::string Ask(std::string_view line) const
    {
        Say(line);
        return Answer();
    }

    // Lets it end.
    void EndInput() { m_input = sim::Handle(); }

    // Waits until it has ended.
    DWORD ExitCode() const;

  private:
    sim::Handle m_process;
    sim::Handle m_input;
    sim::Handle m_output;
};

} // namespace test
