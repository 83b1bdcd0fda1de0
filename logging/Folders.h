#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zant
{

// The functions that give a string throw std::bad_alloc only.

// The user's temporary folder with a backslash at its end; nothing when the system does not know one.
std::optional<std::wstring> TemporaryFolderPath();

// The folder, one backslash and `more`; nothing when the result is too long for a path of classic length, 259
// characters: beyond that the opening of a file fails on systems that were not told otherwise.
std::optional<std::wstring> Appended(std::wstring_view folder, std::wstring_view more);

// Whether anything, file or folder, is at the path.
bool Exists(std::wstring const& path) noexcept;

bool IsFolder(std::wstring const& path) noexcept;

// Makes the folder and every parent that is missing. True when it is there afterwards as far as the system tells at
// creation: a file of that name passes for a folder.
bool CreateFolders(std::wstring const& path);

// The path of a file in the user's temporary folder, which is made if it is missing. Nothing when that fails.
std::optional<std::wstring> MakeTemporaryPath(std::wstring_view fileName);

} // namespace zant
