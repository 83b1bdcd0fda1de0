#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zant
{

// The functions that return a string throw std::bad_alloc only.

// The user's temporary folder, with a trailing backslash. Nothing when the system does not return one.
std::optional<std::wstring> TemporaryFolderPath();

// The folder, one backslash and `more`. Nothing when the result has more than 259 characters: by default, the system
// opens no file by a longer path.
std::optional<std::wstring> Appended(std::wstring_view folder, std::wstring_view more);

// Whether a file or folder exists at the path.
bool Exists(std::wstring const& path) noexcept;

bool IsFolder(std::wstring const& path) noexcept;

// Creates the folder and its missing parents. True when it exists afterwards, as far as its creation tells: a file of
// that name counts as a folder.
bool CreateFolders(std::wstring const& path);

// The path of a file in the user's temporary folder, which is created when missing. Nothing when that fails.
std::optional<std::wstring> MakeTemporaryPath(std::wstring_view fileName);

} // namespace zant
