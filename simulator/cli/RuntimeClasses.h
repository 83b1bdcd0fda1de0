#pragma once

namespace sim
{

// Makes the platform of this Wine prefix find the simulator's runtime classes, in the DLL beside this program. May be
// done again, and by several at once. Throws Error.
void InstallRuntimeClasses();

} // namespace sim
