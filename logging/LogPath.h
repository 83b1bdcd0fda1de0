#pragma once
#include <string_view>

namespace zant
{

// Parts of a Windows path, found in its text alone. The views point into the given path.

// "C:\logs\KZEB.log": "C:\logs"; empty without a backslash.
constexpr std::wstring_view FolderOf(std::wstring_view path) noexcept
{
    auto const end = path.rfind(L'\\');
    return end == path.npos ? std::wstring_view() : path.substr(0, end);
}

// "C:\logs\KZEB.log": "KZEB.log".
constexpr std::wstring_view FileNameOf(std::wstring_view path) noexcept
{
    return path.substr(path.rfind(L'\\') + 1); // without a backslash: npos + 1 is 0
}

// "C:\logs\KZEB.log": ".log"; empty when the file's name has no dot.
constexpr std::wstring_view ExtensionOf(std::wstring_view path) noexcept
{
    auto const name = FileNameOf(path);
    auto const dot = name.rfind(L'.');
    return dot == name.npos ? std::wstring_view() : name.substr(dot);
}

// "C:\logs\KZEB.log": "C:\logs\KZEB".
constexpr std::wstring_view WithoutExtension(std::wstring_view path) noexcept
{
    return path.substr(0, path.size() - ExtensionOf(path).size());
}

// Whether the name contains neither folder nor drive.
constexpr bool IsBareFileName(std::wstring_view name) noexcept
{
    return name.find_first_of(L"\\/:") == name.npos;
}

} // namespace zant
