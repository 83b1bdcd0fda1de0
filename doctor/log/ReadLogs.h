#pragma once
#include "doctor/log/LogFiles.h"
#include "doctor/log/ReadLog.h"

namespace doctor
{

// Reads the logs at the paths, in the order of LogFilesAt: calls `begin` for each file, then `take` for each of its
// entries. Throws Error when a log cannot be read.
template <typename Begin, typename Take>
void ReadLogs(std::vector<std::filesystem::path> const& paths, Begin begin, Take take)
{
    for (auto const& file : LogFilesAt(paths))
    {
        begin(file);
        ReadLog(file, [&](Entry const& entry) {
            take(entry);
            return true;
        });
    }
}

} // namespace doctor
