#include "tests/unit/logging/SuiteProgram.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

SuiteProgram::SuiteProgram(Kind kind)
    : m_folderForPrograms([this](auto, HKEY, auto, auto, DWORD, DWORD*, void* data, DWORD* size) {
          auto const& folder = m_programs.Path();
          EXPECT_LT(folder.size() * sizeof(wchar_t), *size);
          folder.copy(static_cast<wchar_t*>(data), folder.size());
          static_cast<wchar_t*>(data)[folder.size()] = L'\0';
          return LSTATUS{ERROR_SUCCESS};
      })
{
    auto folder = m_programs.Path();
    for (auto const* const name : {L"\\Velmo", L"\\Velmo Tessaline", L"\\HOV"})
    {
        folder += name;
        EXPECT_TRUE(CreateDirectoryW(folder.c_str(), nullptr)) << GetLastError();
    }
    auto const program = folder + L"\\Tessaline.exe";
    if (kind == Kind::WithVersion)
    {
        EXPECT_TRUE(CopyFileW(VERSIONED_PROGRAM, program.c_str(), FALSE)) << GetLastError();
    }
    else
    {
        WriteBytes(program, "no program");
    }
}

} // namespace test
