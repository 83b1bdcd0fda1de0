#pragma once
#include "doctor/verdict/Finding.h"

#include <filesystem>
#include <string>

namespace doctor
{

// Where Windows has the app's log for this user; empty when the system does not tell.
std::filesystem::path LogPathOf(std::wstring const& family);

// Whether the app's log is there, can be written and read, and is no link. It is opened, shared with all others, and
// closed again; nothing is written or made. hasRun: the app has written lines by now.
Finding LogFinding(std::filesystem::path const& log, bool hasRun);

} // namespace doctor
