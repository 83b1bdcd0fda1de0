#pragma once

namespace zant
{

// Points the process-wide default target at this application's log, "Tessaline\HOV\KZEB.log" under the temporary
// folder, and opens the log once as a probe. Creates missing folders and the log. Returns whether the log can be opened
// and stores the answer in the target's `enabled`; false also without a default target. Throws std::bad_alloc only.
bool UseApplicationLogFile();

} // namespace zant
