#pragma once

namespace sim
{

// From now on this process's program calls the replacement where it imports a function of that name; its modules do
// not. Nothing happens when the program does not import it.
void ReplaceImport(char const* name, void* replacement);

} // namespace sim
