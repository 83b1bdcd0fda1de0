#pragma once
#include "doctor/verdict/Finding.h"

#include <string>
#include <vector>

namespace doctor
{

// The names under which a desktop program finds the log's mutex: in the app's container, and its plain name, under
// which it is where apps have no containers.
std::vector<std::wstring> MutexNames(std::wstring const& family);

// Whether the log's mutex is free within the 2 s for which the app waits. It is opened, not created. One that a process
// left abandoned stays so: the app's next process learns of it. appRuns: the mutex must exist.
Finding MutexFinding(std::wstring const& family, bool appRuns);

} // namespace doctor
