#pragma once
#include "explore/log/Files.h"

#include <string>
#include <vector>

namespace explore
{

// The log or a copy of it.
struct LogFile
{
    std::wstring path; // in lower case
    std::string bytes; // without a hole
    bool hasMark;
    std::vector<std::wstring> lines = {}; // of one with its mark: what stands before each end of a line
    std::wstring rest = {};               // behind the last one

    bool IsCopy() const;
};

LogFile ReadLogFile(std::wstring const& path, std::string const& bytes);
std::vector<LogFile> ReadLogFiles(Files const& files);

} // namespace explore
