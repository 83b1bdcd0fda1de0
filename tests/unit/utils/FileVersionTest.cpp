#include "utils/FileVersion.h"
#include "tests/support/Files.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedCall.h"

#include <bit>
#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <windows.h>

using namespace zant;

namespace
{

// The system's header does not declare these functions as imported: the plain functions are wrapped, and the linker
// does not provide the originals by name.
template <typename Function>
Function FromVersionLibrary(char const* name)
{
    return std::bit_cast<Function>(GetProcAddress(LoadLibraryW(L"version.dll"), name));
}

auto realGetSize = FromVersionLibrary<decltype(&GetFileVersionInfoSizeW)>("GetFileVersionInfoSizeW");
auto realGetInfo = FromVersionLibrary<decltype(&GetFileVersionInfoW)>("GetFileVersionInfoW");
auto realQuery = FromVersionLibrary<decltype(&VerQueryValueW)>("VerQueryValueW");

using GetSizeCall = test::WrappedCall<&realGetSize>;
using GetInfoCall = test::WrappedCall<&realGetInfo>;
using QueryCall = test::WrappedCall<&realQuery>;

// In the folder of the test program.
std::wstring PathOf(std::wstring const& program)
{
    wchar_t path[MAX_PATH] = {};
    std::wstring const own(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return own.substr(0, own.rfind(L'\\') + 1) + program;
}

std::wstring const versionedProgram = PathOf(L"versioned_program.exe");
std::wstring const plainProgram = PathOf(L"plain_program.exe");

// "none" for a file without one.
std::wstring VersionOf(std::wstring const& path)
{
    std::wstring text = L"none";
    auto const found = GetFileVersionText(path, text);
    EXPECT_EQ(found, text != L"none");
    return text;
}

// Changes the result of the system's query.
auto Changing(std::function<void(VS_FIXEDFILEINFO&, UINT&)> const& change)
{
    return [change](auto next, void const* block, wchar_t const* name, void** found, UINT* length) {
        auto const result = next(block, name, found, length);
        change(*static_cast<VS_FIXEDFILEINFO*>(*found), *length);
        return result;
    };
}

TEST(FileVersion, IsThatOfTheProgramsResource)
{
    EXPECT_EQ(VersionOf(versionedProgram), L"12.0.65535.32768");
}

TEST(FileVersion, HasItsFourNumbersFromTheHighestOn)
{
    QueryCall const changed(Changing([](VS_FIXEDFILEINFO& information, UINT&) {
        information.dwFileVersionMS = 0x0001'0002;
        information.dwFileVersionLS = 0x0003'0004;
    }));
    EXPECT_EQ(VersionOf(versionedProgram), L"1.2.3.4");
}

TEST(FileVersion, IsThatOfASystemLibraryAsWell)
{
    auto const version = VersionOf(L"C:\\windows\\system32\\kernel32.dll");
    EXPECT_EQ(test::Split(version, L".").size(), 4u) << testing::PrintToString(version);
}

TEST(FileVersion, IsAskedForOfTheRootOfTheResource)
{
    std::wstring name;
    QueryCall const query([&](auto next, void const* block, wchar_t const* wanted, void** found, UINT* length) {
        name = wanted;
        return next(block, wanted, found, length);
    });
    VersionOf(versionedProgram);
    EXPECT_EQ(name, L"\\");
}

TEST(FileVersion, IsNotThereForAProgramWithoutAResource)
{
    ASSERT_TRUE(test::FileExists(plainProgram));
    EXPECT_EQ(VersionOf(plainProgram), L"none");
}

TEST(FileVersion, IsNotThereForATextFile)
{
    test::TemporaryFolder const folder;
    test::WriteBytes(folder / L"text.exe", "not a program at all");
    EXPECT_EQ(VersionOf(folder / L"text.exe"), L"none");
}

TEST(FileVersion, IsNotThereForWhatIsNoFile)
{
    test::TemporaryFolder const folder;
    EXPECT_EQ(VersionOf(folder / L"missing.exe"), L"none");
    EXPECT_EQ(VersionOf(folder.Path()), L"none");
    EXPECT_EQ(VersionOf(L""), L"none");
}

TEST(FileVersion, IsNotThereAndNotAskedForWhenTheSizeCannotBeRead)
{
    GetSizeCall const failing([](auto, wchar_t const*, DWORD*) -> DWORD { return 0; });
    auto isAsked = false;
    GetInfoCall const info([&](auto next, auto... arguments) -> BOOL {
        isAsked = true;
        return next(arguments...);
    });
    EXPECT_EQ(VersionOf(versionedProgram), L"none");
    EXPECT_FALSE(isAsked);
}

TEST(FileVersion, IsNotThereWhenTheResourceCannotBeRead)
{
    GetInfoCall const failing([](auto next, auto... arguments) -> BOOL {
        next(arguments...);
        return FALSE;
    });
    EXPECT_EQ(VersionOf(versionedProgram), L"none");
}

TEST(FileVersion, IsNotThereWhenTheResourceHasNoRoot)
{
    QueryCall const failing([](auto next, auto... arguments) -> BOOL {
        next(arguments...);
        return FALSE;
    });
    EXPECT_EQ(VersionOf(versionedProgram), L"none");
}

TEST(FileVersion, IsNotThereWhenTheRootIsEmpty)
{
    QueryCall const empty(Changing([](auto&, UINT& length) { length = 0; }));
    EXPECT_EQ(VersionOf(versionedProgram), L"none");
}

TEST(FileVersion, IsNotThereUnderAnotherSignature)
{
    QueryCall const changed(Changing([](VS_FIXEDFILEINFO& information, UINT&) { information.dwSignature ^= 1; }));
    EXPECT_EQ(VersionOf(versionedProgram), L"none");
}

TEST(FileVersion, IsNotReadBeyondTheEndOfTheRoot)
{
    QueryCall const shortened(
        Changing([](auto&, UINT& length) { length = offsetof(VS_FIXEDFILEINFO, dwFileVersionLS); }));
    EXPECT_EQ(VersionOf(versionedProgram), L"12.0.0.0");
}

TEST(FileVersion, IsNotThereWhenMemoryIsShort)
{
    std::wstring text = L"none";
    auto found = true;
    {
        test::ShortMemory const memory;
        found = GetFileVersionText(versionedProgram, text);
    }
    EXPECT_FALSE(found);
    EXPECT_EQ(text, L"none");
}

TEST(FileVersion, GivesTheSystemABufferOfTheSizeThatItAskedFor)
{
    DWORD asked = 0;
    GetSizeCall const size([&](auto next, auto... arguments) { return asked = next(arguments...); });
    GetInfoCall const info([&](auto next, wchar_t const* path, DWORD ignored, DWORD given, void* data) {
        EXPECT_EQ(given, asked);
        return next(path, ignored, given, data);
    });
    EXPECT_EQ(VersionOf(versionedProgram), L"12.0.65535.32768");
    EXPECT_NE(asked, 0u);
}

// The memory blocks that reading a file's version leaks.
std::ptrdiff_t BlocksLeft(std::wstring const& path)
{
    auto const before = test::HeldBlocks();
    {
        std::wstring text;
        GetFileVersionText(path, text);
    }
    return test::HeldBlocks() - before;
}

TEST(FileVersion, LeavesNoMemoryBehindWhateverFails)
{
    EXPECT_EQ(BlocksLeft(versionedProgram), 0);
    EXPECT_EQ(BlocksLeft(plainProgram), 0);
    {
        GetInfoCall const failing([](auto, auto...) -> BOOL { return FALSE; });
        EXPECT_EQ(BlocksLeft(versionedProgram), 0);
    }
    {
        QueryCall const failing([](auto, auto...) -> BOOL { return FALSE; });
        EXPECT_EQ(BlocksLeft(versionedProgram), 0);
    }
    QueryCall const changed(Changing([](VS_FIXEDFILEINFO& information, UINT&) { information.dwSignature = 0; }));
    EXPECT_EQ(BlocksLeft(versionedProgram), 0);
}

} // namespace

extern "C"
{
    DWORD WINAPI __wrap_GetFileVersionInfoSizeW(wchar_t const* path, DWORD* ignored)
    {
        return GetSizeCall::Entry(path, ignored);
    }

    BOOL WINAPI __wrap_GetFileVersionInfoW(wchar_t const* path, DWORD ignored, DWORD size, void* data)
    {
        return GetInfoCall::Entry(path, ignored, size, data);
    }

    BOOL WINAPI __wrap_VerQueryValueW(void const* block, wchar_t const* name, void** found, UINT* length)
    {
        return QueryCall::Entry(block, name, found, length);
    }
}
