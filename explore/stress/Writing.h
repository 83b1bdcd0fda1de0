#pragma once
#include <cstdint>
#include <string>

namespace explore::stress
{

// A process that writes: logs its lines as the app does, and says in its note how far it is. Returns the process's exit
// code: 0 when all of them are written.
int WriteLines(std::wstring const& run, std::uint32_t life);

} // namespace explore::stress
