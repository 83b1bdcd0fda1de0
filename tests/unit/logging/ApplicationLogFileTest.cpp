#include "logging/ApplicationLogFile.h"

#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

class ApplicationLogFile : public LogFixture
{
  protected:
    ApplicationLogFile() { g_defaultLogTarget = &target; }

    ~ApplicationLogFile() override { g_defaultLogTarget = nullptr; }

    std::wstring const logFolder = temporary / L"Tessaline\\HOV";
    std::wstring const logPath = logFolder + L"\\KZEB.log";
    LogTargetDefault target;
};

} // namespace

TEST_F(ApplicationLogFile, FailsWithoutADefaultTarget)
{
    g_defaultLogTarget = nullptr;
    EXPECT_FALSE(UseApplicationLogFile());
}

TEST_F(ApplicationLogFile, IsMadeWithItsFoldersByTheProbe)
{
    EXPECT_TRUE(UseApplicationLogFile());
    EXPECT_TRUE(target.enabled);
    EXPECT_EQ(target.filePath, logPath);
    EXPECT_EQ(target.fileName, L"KZEB.log");
    EXPECT_EQ(ReadBytes(logPath), wideMark);
    EXPECT_FALSE(target.file);
    EXPECT_FALSE(target.isOpen);
}

TEST_F(ApplicationLogFile, ComesIntoAFolderThatExists)
{
    CreateDirectoryW((temporary / L"Tessaline").c_str(), nullptr);
    CreateDirectoryW(logFolder.c_str(), nullptr);
    CreateDirectoryCall const fault(Failing(FALSE, ERROR_ACCESS_DENIED)); // nothing is to be made
    EXPECT_TRUE(UseApplicationLogFile());
}

TEST_F(ApplicationLogFile, IsWrittenToOnceTheTargetIsOpened)
{
    ASSERT_TRUE(UseApplicationLogFile());
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(logPath), std::vector<std::wstring>{L"m"});
}

TEST_F(ApplicationLogFile, ReplacesTheFileOfAnOpenTarget)
{
    Configure(target);
    ASSERT_TRUE(target.Open());
    ASSERT_TRUE(UseApplicationLogFile());
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(logPath), std::vector<std::wstring>{L"m"});
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(ApplicationLogFile, LeavesTheFileOfAnOpenTargetWithoutAPathOfItsOwn)
{
    Configure(target);
    ASSERT_TRUE(target.Open());
    {
        GetTempPathCall const fault(Failing(DWORD{0}, ERROR_NOT_ENOUGH_MEMORY));
        EXPECT_FALSE(UseApplicationLogFile());
    }
    EXPECT_FALSE(target.enabled);
    EXPECT_TRUE(target.file);
    EXPECT_EQ(target.fileName, LogName());
}

TEST_F(ApplicationLogFile, AFileInTheFoldersPlaceDisablesTheTarget)
{
    WriteBytes(temporary / L"Tessaline", "");
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(target.enabled);
    EXPECT_FALSE(target.Open());
}

TEST_F(ApplicationLogFile, AFolderThatCannotBeMadeDisablesTheTarget)
{
    CreateDirectoryCall const fault(Failing(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(target.enabled);
}

TEST_F(ApplicationLogFile, AFailingProbeDisablesTheTarget)
{
    CreateFileCall const fault(Failing(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(target.enabled);
}

TEST_F(ApplicationLogFile, NoTemporaryFolderDisablesTheTarget)
{
    GetTempPathCall const fault(Failing(DWORD{0}, ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(target.enabled);
}

namespace
{

// Gives the temporary folder a name with which the path of the log has this length.
GetTempPathCall::Function TemporaryFolderFor(std::size_t pathLength)
{
    std::wstring const rest = L"Tessaline\\HOV\\KZEB.log";
    return [=](auto, DWORD size, wchar_t* path) {
        auto name = L"C:\\" + std::wstring(pathLength - rest.size() - 4, L'x') + L"\\";
        EXPECT_GT(size, name.size());
        name.copy(path, name.size() + 1);
        path[name.size()] = L'\0';
        return static_cast<DWORD>(name.size());
    };
}

} // namespace

TEST_F(ApplicationLogFile, APathOf260CharactersDisablesTheTarget)
{
    bool opened = false;
    CreateFileCall const open([&](auto...) {
        opened = true;
        return INVALID_HANDLE_VALUE;
    });
    CreateDirectoryCall const create(Failing(FALSE, ERROR_PATH_NOT_FOUND));
    {
        GetTempPathCall const temporaryFolder(TemporaryFolderFor(260));
        EXPECT_FALSE(UseApplicationLogFile());
        EXPECT_FALSE(target.enabled);
        EXPECT_FALSE(opened);
    }
    {
        GetTempPathCall const temporaryFolder(TemporaryFolderFor(259));
        UseApplicationLogFile();
        EXPECT_TRUE(opened);
        EXPECT_EQ(target.filePath.size(), 259u);
    }
}

TEST_F(ApplicationLogFile, ATemporaryFolderTooLongForTheFolderDisablesTheTarget)
{
    GetTempPathCall const temporaryFolder(TemporaryFolderFor(282));
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(target.enabled);
}
