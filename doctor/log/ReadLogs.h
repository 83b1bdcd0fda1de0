#pragma once
#include "doctor/log/LogFolder.h"
#include "doctor/log/ReadLog.h"

#include <functional>

namespace doctor
{

// Takes the path of a log before its first entry.
using BeginLog = std::function<void(std::filesystem::path const&)>;

// Reads logs one after the other, and of one that fails what comes before that. The sentences about what was not read.
std::vector<std::string> ReadLogs(FoundLogs const& logs, BeginLog const& begin, TakeEntry const& take);

} // namespace doctor
