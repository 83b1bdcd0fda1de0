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

// Creates the folder with all missing parents. Throws Error.
void MakeFolder(std::wstring const& path);

// Removes a file, or a folder with its contents. Does nothing when it is missing; ignores what cannot be removed.
void Remove(std::wstring const& path);

// Copies the contents of a folder into another one, which is created if necessary. Throws Error.
void CopyFolder(std::wstring const& from, std::wstring const& to);

// The paths of all files in a folder and its subfolders, unordered. Links are not followed.
std::vector<std::wstring> FilesBelow(std::wstring const& folder);

// nullopt when there is no such file.
std::optional<std::uint64_t> FileSize(std::wstring const& path);

// The bytes of a file from that offset on; others may have it open for writing. Throws Error.
std::string ReadBytes(std::wstring const& path, std::uint64_t from = 0);

// The text of a UTF-8 file, without its byte-order mark. Throws Error.
std::wstring ReadText(std::wstring const& path);

// Replaces the file. Throws Error.
void WriteBytes(std::wstring const& path, std::string_view bytes);

// The same, atomically: a reader, also after a crash, finds either the old bytes or the new ones. Waits a second for a
// file that is open. Throws Error.
void ReplaceBytes(std::wstring const& path, std::string_view bytes);

// Absolute, with backslashes, without one at the end.
std::wstring FullPath(std::wstring const& path);

// The folder that contains a file or folder.
std::wstring ParentOf(std::wstring const& path);

// The system's message for an error code: "file not found (2)".
std::wstring SystemMessage(unsigned long error);

} // namespace sim
