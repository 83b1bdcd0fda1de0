#include "utils/SuiteFolder.h"

#include "tests/support/ShortMemory.h"
#include "tests/support/WrappedSystem.h"

#include <bit>
#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

USHORT s_nativeMachine = 0;

BOOL WINAPI TellNativeMachine(HANDLE, USHORT* process, USHORT* native)
{
    *process = IMAGE_FILE_MACHINE_UNKNOWN;
    *native = s_nativeMachine;
    return TRUE;
}

// Replaces the machine's architecture while it exists.
class Machine
{
  public:
    explicit Machine(USHORT native) { s_nativeMachine = native; }

  private:
    GetProcAddressCall m_call{[](auto next, HMODULE module, char const* name) {
        return std::string_view(name) == "IsWow64Process2" ? std::bit_cast<FARPROC>(&TellNativeMachine)
                                                           : next(module, name);
    }};
};

std::wstring SuiteFolderOf(USHORT nativeMachine)
{
    Machine const machine(nativeMachine);
    std::wstring result;
    EXPECT_TRUE(GetSuiteInstallFolder(result));
    return result;
}

// The value of an environment variable, as the shell uses it.
std::wstring Variable(wchar_t const* name)
{
    wchar_t value[MAX_PATH] = {};
    EXPECT_NE(GetEnvironmentVariableW(name, value, MAX_PATH), 0u);
    return value;
}

} // namespace

TEST(SuiteFolder, IsUnderTheProgramsOf32BitsOnX64)
{
    EXPECT_EQ(SuiteFolderOf(IMAGE_FILE_MACHINE_AMD64), Variable(L"ProgramFiles(x86)") + L"\\Velmo\\Velmo Tessaline");
}

TEST(SuiteFolder, IsThereOnAnyOtherMachineButArm64)
{
    EXPECT_EQ(SuiteFolderOf(IMAGE_FILE_MACHINE_I386), SuiteFolderOf(IMAGE_FILE_MACHINE_AMD64));
}

TEST(SuiteFolder, IsUnderTheNativeProgramsOnArm64)
{
    EXPECT_EQ(SuiteFolderOf(IMAGE_FILE_MACHINE_ARM64), Variable(L"ProgramW6432") + L"\\Velmo\\Velmo Tessaline");
}

TEST(SuiteFolder, IsThatOfX64WhenTheMachineIsNotTold)
{
    GetProcAddressCall const missing([](auto...) { return nullptr; });
    std::wstring result;
    EXPECT_TRUE(GetSuiteInstallFolder(result));
    EXPECT_EQ(result, Variable(L"ProgramFiles(x86)") + L"\\Velmo\\Velmo Tessaline");
}

TEST(SuiteFolder, IsNotTouchedWhenTheFolderForProgramsCannotBeHad)
{
    for (auto const error : {LSTATUS{ERROR_FILE_NOT_FOUND}, LSTATUS{ERROR_ACCESS_DENIED}, LSTATUS{ERROR_MORE_DATA}})
    {
        RegGetValueCall const fault([=](auto...) { return error; });
        std::wstring result = L"as before";
        EXPECT_FALSE(GetSuiteInstallFolder(result));
        EXPECT_EQ(result, L"as before");
    }
}

TEST(SuiteFolder, IsNotTouchedWhenTheFolderForProgramsHasNoName)
{
    RegGetValueCall const empty([](auto, HKEY, auto, auto, DWORD, DWORD*, void* data, DWORD*) {
        *static_cast<wchar_t*>(data) = L'\0';
        return LSTATUS{ERROR_SUCCESS};
    });
    std::wstring result = L"as before";
    EXPECT_FALSE(GetSuiteInstallFolder(result));
    EXPECT_EQ(result, L"as before");
}

TEST(SuiteFolder, IsNotToldWhenMemoryIsShort)
{
    std::wstring result;
    ShortMemory const none;
    EXPECT_FALSE(GetSuiteInstallFolder(result));
    EXPECT_TRUE(result.empty());
}
