#include "tests/support/TemporaryFolder.h"

#include "simulator/base/UnixPath.h"

#include <atomic>
#include <cstdio>
#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

namespace
{

// The process id distinguishes processes that run side by side, the counter the folders of one process.
std::wstring NewPath()
{
    static std::atomic<int> counter = 0;
    wchar_t temporary[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH, temporary);
    return std::wstring(temporary) + L"test-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++counter);
}

bool IsDotName(wchar_t const* name)
{
    return std::wstring_view(name) == L"." || std::wstring_view(name) == L"..";
}

void RemoveTree(std::wstring const& folder)
{
    WIN32_FIND_DATAW found;
    auto const search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
    {
        return;
    }
    do
    {
        auto const path = folder + L"\\" + found.cFileName;
        auto const isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (IsDotName(found.cFileName))
        {
            continue;
        }
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        {
            isLink ? static_cast<void>(RemoveDirectoryW(path.c_str())) : RemoveTree(path);
            continue;
        }
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
    } while (FindNextFileW(search, &found));
    FindClose(search);
    RemoveDirectoryW(folder.c_str());
}

} // namespace

TemporaryFolder::TemporaryFolder() : m_path(NewPath())
{
    // A folder of an earlier process with the same id may still be in use.
    for (int others = 0; !CreateDirectoryW(m_path.c_str(), nullptr) && others < 1000; ++others)
    {
        m_path = NewPath();
    }
}

TemporaryFolder::~TemporaryFolder()
{
    if (testing::Test::HasFailure())
    {
        std::printf("kept for a look: %s\n", sim::UnixPath(m_path).c_str());
        return;
    }
    RemoveTree(m_path);
}

} // namespace test
