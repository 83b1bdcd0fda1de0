#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

bool FileExists(std::wstring const& path);
bool FolderExists(std::wstring const& path);

// With all missing parents. Throws Error.
void MakeFolder(std::wstring const& path);

// A folder with all that is in it, or a file; nothing when it is missing. What cannot be removed stays.
void Remove(std::wstring const& path);

// All files of a folder and below, into another one that is made when missing. Throws Error.
void CopyFolder(std::wstring const& from, std::wstring const& to);

// The paths of all files in a folder and below, in no order. Links are not followed.
std::vector<std::wstring> FilesBelow(std::wstring const& folder);

// Nothing when there is no such file.
std::optional<std::uint64_t> FileSize(std::wstring const& path);

// The file from that byte on; others may have it open for writing. Throws Error.
std::string ReadBytes(std::wstring const& path, std::uint64_t from = 0);

// A text in UTF-8, without the mark that it may begin with. Throws Error.
std::wstring ReadText(std::wstring const& path);

// Replaces the file. Throws Error.
void WriteBytes(std::wstring const& path, std::string_view bytes);

// The same, at once: a reader of the file, also after a crash, finds the old bytes or the new ones. Throws Error.
void ReplaceBytes(std::wstring const& path, std::string_view bytes);

// Absolute, with backslashes and none at the end.
std::wstring FullPath(std::wstring const& path);

// The folder that holds a file or folder.
std::wstring ParentOf(std::wstring const& path);

// "file not found (2)": the system's words for one of its error numbers.
std::wstring SystemMessage(unsigned long error);

} // namespace sim
