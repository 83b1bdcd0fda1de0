#include "tests/unit/logging/SuiteProgram.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>
#include <ranges>
#include <windows.h>

namespace test
{

SuiteProgram::SuiteProgram(Kind kind)
{
    wchar_t programs[MAX_PATH] = {};
    GetEnvironmentVariableW(L"ProgramFiles(x86)", programs, MAX_PATH);
    m_folders[0] = std::wstring(programs) + L"\\Velmo";
    m_folders[1] = m_folders[0] + L"\\Velmo Tessaline";
    m_folders[2] = m_folders[1] + L"\\HOV";
    m_path = m_folders[2] + L"\\Tessaline.exe";
    for (auto const& folder : m_folders)
    {
        CreateDirectoryW(folder.c_str(), nullptr);
    }
    if (kind == Kind::WithVersion)
    {
        EXPECT_TRUE(CopyFileW(VERSIONED_PROGRAM, m_path.c_str(), FALSE)) << GetLastError();
    }
    else
    {
        WriteBytes(m_path, "no program");
    }
}

SuiteProgram::~SuiteProgram()
{
    DeleteFileW(m_path.c_str());
    for (auto const& folder : m_folders | std::views::reverse)
    {
        RemoveDirectoryW(folder.c_str());
    }
}

} // namespace test
