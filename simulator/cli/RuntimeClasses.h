#pragma once

namespace sim
{

// Registers the simulator's runtime classes, in the DLL beside this program, in this Wine prefix. May be repeated, also
// by several processes at once. Throws Error.
void InstallRuntimeClasses();

} // namespace sim
