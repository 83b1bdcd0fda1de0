#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace doctor
{

// Log files, and a sentence for each file and folder that cannot be read: "C:\logs\KZEB.log: Access is denied (5)".
struct FoundLogs
{
    std::vector<std::filesystem::path> files;
    std::vector<std::string> unread;
};

// The name ends in ".log", in upper or lower case.
bool HasLogName(std::filesystem::path const& file);

// Both absolute paths name one file, whatever the case of their letters.
bool IsSameFile(std::filesystem::path const& one, std::filesystem::path const& other);

// Adds all files in the folder and below that have a log's name. Links to other folders are left out.
void AddLogsBelow(std::filesystem::path const& folder, FoundLogs& found);

} // namespace doctor
