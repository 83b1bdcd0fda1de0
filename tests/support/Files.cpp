#include "tests/support/Files.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

std::string ReadBytes(std::wstring const& path)
{
    auto const file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
    LARGE_INTEGER size = {};
    if (file == INVALID_HANDLE_VALUE || !GetFileSizeEx(file, &size))
    {
        ADD_FAILURE() << "cannot be read, error " << GetLastError() << ": " << testing::PrintToString(path);
        return {};
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    EXPECT_EQ(read, bytes.size());
    return bytes;
}

void WriteBytes(std::wstring const& path, std::string_view bytes)
{
    auto const file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    ASSERT_EQ(written, bytes.size());
}

bool FileExists(std::wstring const& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<std::wstring> NamesIn(std::wstring const& folder)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    auto const search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
    {
        return names;
    }
    do
    {
        std::wstring_view const name = found.cFileName;
        if (name != L"." && name != L"..")
        {
            names.emplace_back(name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::ranges::sort(names);
    return names;
}

std::string Utf16(std::wstring_view text)
{
    static_assert(sizeof(wchar_t) == 2);
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)};
}

std::vector<std::wstring> ReadLines(std::wstring const& path)
{
    auto const bytes = ReadBytes(path);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    if (text.starts_with(L'\xFEFF'))
    {
        text.erase(0, 1);
    }
    auto lines = Split(text, L"\r\n");
    if (lines.back().empty())
    {
        lines.pop_back();
    }
    return lines;
}

std::vector<std::wstring> Split(std::wstring_view text, std::wstring_view separator)
{
    std::vector<std::wstring> parts;
    for (;;)
    {
        auto const end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == text.npos)
        {
            return parts;
        }
        text.remove_prefix(end + separator.size());
    }
}

} // namespace test
