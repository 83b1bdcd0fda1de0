#pragma once

namespace zant
{

// Points the process-wide default target at this application's log, "Tessaline\HOV\KZEB.log" under the temporary folder
// (made when missing), and tries whether it can be opened, which creates it. Returns and leaves in the target's
// `enabled` whether it can; false also without a default target. Throws std::bad_alloc only.
bool UseApplicationLogFile();

} // namespace zant
