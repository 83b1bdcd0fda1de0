#pragma once
#include "simulator/client/DeviceCommands.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// A command was called in a way that it does not have.
class WrongCall
{
  public:
    explicit WrongCall(std::wstring message) : m_message(std::move(message)) {}

    std::wstring const& Message() const noexcept { return m_message; }

  private:
    std::wstring m_message;
};

// What this program does itself; what a device does for it is in client/DeviceCommands.h.
struct Command
{
    std::wstring_view name;
    std::wstring_view arguments;
    std::wstring_view summary;
    std::wstring_view help; // the rest, for those who ask
    std::size_t fewestWords;
    std::size_t mostWords;
    int (*run)(Words const& words); // gives the exit code; throws Error and WrongCall
};

std::span<Command const> Commands();

// Runs the command that the words name: 0 when it went well, 1 when it did not, 2 when it was called wrongly.
int RunCommand(Words const& words);

} // namespace sim
