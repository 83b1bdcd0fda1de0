#include "logging/ApplicationLogFile.h"
#include "logging/LogFile.h"
#include "tests/support/MakeLink.h"
#include "tests/unit/logging/FailingSystem.h"

#include <algorithm>

using namespace test;
using namespace zant;

namespace
{

// Reports the path as a reparse point while it exists, if there is a file: Wine creates no links to files that appear
// as such.
class ShownAsLink
{
  public:
    explicit ShownAsLink(std::wstring path) : m_path(std::move(path)) {}

  private:
    std::wstring const m_path;
    GetFileAttributesCall m_call{[this](auto next, wchar_t const* path) {
        auto const attributes = next(path);
        return path == m_path && attributes != INVALID_FILE_ATTRIBUTES ? attributes | FILE_ATTRIBUTE_REPARSE_POINT
                                                                       : attributes;
    }};
};

// A log with links in its path.
class LinkedLog : public FailingSystem
{
  protected:
    void MakeHardLink(std::wstring const& path) const
    {
        ASSERT_TRUE(CreateHardLinkW(other.c_str(), path.c_str(), nullptr));
    }

    // A folder and a link to it, where the log then is.
    void UseLinkedFolder()
    {
        CreateDirectoryW(realFolder.c_str(), nullptr);
        MakeLink(folder / L"link", realFolder);
        target.filePath = folder / L"link\\" + LogName();
    }

    // Opens the log at its limit and logs a line after which the next one checks it.
    void PrepareRotation()
    {
        target.storedHeader.title = L"header";
        OpenAtTheLimit();
        LogAt(target, (static_cast<std::uint64_t>(target.lastCheck) + 900) * 1'000, L"before");
    }

    std::wstring CopyPath() const { return folder / (Base() + L" 2024-1-5 09-30-12.log"); }

    // The last messages of a log, as many as there are.
    static std::vector<std::wstring> LastMessages(std::wstring const& path, std::size_t count)
    {
        auto messages = MessagesIn(path);
        messages.erase(messages.begin(),
                       messages.end() - static_cast<std::ptrdiff_t>(std::min(count, messages.size())));
        return messages;
    }

    std::wstring const other = folder / L"other";
    std::wstring const realFolder = folder / L"real";
};

} // namespace

// --- opening ---

TEST_F(LinkedLog, IsNotOpenedWithAnotherHardLink)
{
    WriteBytes(LogPath(), wideMark);
    MakeHardLink(LogPath());
    EXPECT_FALSE(target.Open());
    EXPECT_FALSE(target.file);
    LogAt(target, 0, L"m");
    EXPECT_EQ(ReadBytes(other), wideMark);
    EXPECT_EQ(handles.Open(), 0u);
}

TEST_F(LinkedLog, IsNotOpenedBelowALinkedFolder)
{
    UseLinkedFolder();
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(NamesIn(realFolder), std::vector<std::wstring>());
    WriteBytes(realFolder + L"\\" + LogName(), wideMark);
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(handles.Open(), 0u);
}

TEST_F(LinkedLog, IsDeletedAndBegunAnewWhereItIsALinkItself)
{
    WriteBytes(LogPath(), wideMark + "earlier");
    ShownAsLink const link(LogPath());
    int deleted = 0;
    DeleteFileCall const deleting([&](auto next, wchar_t const* path) {
        EXPECT_EQ(path, LogPath());
        ++deleted;
        return next(path);
    });
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LinkedLog, IsDeletedThoughItIsReadOnlyWhereItIsALinkItself)
{
    WriteBytes(LogPath(), wideMark + "earlier");
    SetFileAttributesW(LogPath().c_str(), FILE_ATTRIBUTE_READONLY);
    ShownAsLink const link(LogPath());
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LinkedLog, IsNotOpenedWhereItIsALinkThatCannotBeDeleted)
{
    WriteBytes(LogPath(), wideMark + "earlier");
    {
        ShownAsLink const link(LogPath());
        DeleteFileCall const fault(Failing(FALSE, ERROR_SHARING_VIOLATION));
        EXPECT_FALSE(target.Open());
    }
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + "earlier");
    EXPECT_EQ(handles.Open(), 0u);
}

// A link to a folder, a real one, is not deleted as a file is.
TEST_F(LinkedLog, IsNotOpenedWhereItIsALinkToAFolder)
{
    CreateDirectoryW(realFolder.c_str(), nullptr);
    MakeLink(LogPath(), realFolder);
    EXPECT_FALSE(target.Open());
    EXPECT_TRUE(FileExists(LogPath()));
    EXPECT_EQ(NamesIn(realFolder), std::vector<std::wstring>());
}

TEST_F(LinkedLog, DisablesTheApplicationsTarget)
{
    LogTargetDefault application;
    g_defaultLogTarget = &application;
    ASSERT_TRUE(UseApplicationLogFile());
    MakeHardLink(application.filePath);
    EXPECT_FALSE(UseApplicationLogFile());
    EXPECT_FALSE(application.enabled);
    EXPECT_FALSE(application.Open());
    g_defaultLogTarget = nullptr;
}

// Its open handle is of another file, which must not be written to.
TEST_F(LinkedLog, ClosesTheFileOfAnOpenTargetThatMayNotHaveAnother)
{
    ASSERT_TRUE(target.Open());
    CreateDirectoryW((temporary / L"Tessaline").c_str(), nullptr);
    CreateDirectoryW((temporary / L"Tessaline\\HOV").c_str(), nullptr);
    WriteBytes(temporary / L"Tessaline\\HOV\\KZEB.log", wideMark);
    MakeHardLink(temporary / L"Tessaline\\HOV\\KZEB.log");
    g_defaultLogTarget = &target;
    EXPECT_FALSE(UseApplicationLogFile());
    g_defaultLogTarget = nullptr;
    EXPECT_FALSE(target.enabled);
    EXPECT_FALSE(target.file);
    LogAt(target, 0, L"lost");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    EXPECT_EQ(ReadBytes(other), wideMark);
}

// --- setting aside ---

TEST_F(LinkedLog, OfAnotherEncodingIsSetAsideThoughItHasAnotherHardLink)
{
    WriteBytes(LogPath(), "plain");
    MakeHardLink(LogPath());
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(target.setAsidePath, CopyPath());
    EXPECT_EQ(ReadBytes(CopyPath()), "plain");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LinkedLog, OfAnotherEncodingIsNotSetAsideBelowALinkedFolder)
{
    UseLinkedFolder();
    WriteBytes(realFolder + L"\\" + LogName(), "plain");
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(NamesIn(realFolder), std::vector{LogName()});
    EXPECT_EQ(target.setAsidePath, L"");
}

// The name was free a moment ago; what is there now is left alone.
TEST_F(LinkedLog, OfAnotherEncodingIsNotSetAsideToALink)
{
    WriteBytes(LogPath(), "plain");
    {
        int asked = 0;
        GetFileAttributesCall const attributes([&](auto next, wchar_t const* path) -> DWORD {
            if (path != CopyPath())
            {
                return next(path);
            }
            return asked++ == 0 ? INVALID_FILE_ATTRIBUTES : FILE_ATTRIBUTE_REPARSE_POINT;
        });
        DeleteFileCall const deleting([&](auto, wchar_t const* path) {
            ADD_FAILURE() << testing::PrintToString(std::wstring(path));
            return FALSE;
        });
        EXPECT_TRUE(target.Open());
        EXPECT_EQ(asked, 2);
    }
    EXPECT_EQ(target.setAsidePath, L"");
    EXPECT_FALSE(FileExists(CopyPath()));
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
}

// --- copying ---

TEST_F(LinkedLog, IsNotCopiedIntoAFileWithAnotherHardLink)
{
    WriteBytes(CopyPath(), "copy");
    MakeHardLink(CopyPath());
    PrepareRotation();
    LogAt(target, 0, L"after");
    EXPECT_EQ(ReadBytes(other), "copy");
    EXPECT_EQ(LastMessages(LogPath(), 3), (std::vector<std::wstring>{L"before", L"header", L"after"}));
}

TEST_F(LinkedLog, IsCopiedInPlaceOfALinkOfThatName)
{
    WriteBytes(CopyPath(), "copy");
    PrepareRotation();
    ShownAsLink const link(CopyPath());
    int deleted = 0;
    DeleteFileCall const deleting([&](auto next, wchar_t const* path) {
        EXPECT_EQ(path, CopyPath());
        ++deleted;
        return next(path);
    });
    LogAt(target, 0, L"after");
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(LastMessages(CopyPath(), 1), std::vector<std::wstring>{L"before"});
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"header", L"after"}));
}

TEST_F(LinkedLog, IsNotCopiedWhereALinkOfThatNameCannotBeDeleted)
{
    WriteBytes(CopyPath(), "copy");
    PrepareRotation();
    {
        ShownAsLink const link(CopyPath());
        DeleteFileCall const fault(Failing(FALSE, ERROR_SHARING_VIOLATION));
        LogAt(target, 0, L"after");
    }
    EXPECT_EQ(ReadBytes(CopyPath()), "copy");
    EXPECT_EQ(LastMessages(LogPath(), 3), (std::vector<std::wstring>{L"before", L"header", L"after"}));
}

namespace
{

// The folder has become a link while the log was open.
class LinkedLogMoved : public LinkedLog
{
  protected:
    void SetUp() override
    {
        CreateDirectoryW(liveFolder.c_str(), nullptr);
        target.filePath = liveFolder + L"\\" + LogName();
        ASSERT_TRUE(target.Open());
        target.file.Reset();
        WriteLogOfSize(target.filePath, limit);
        ASSERT_TRUE(target.OpenFile(target.file));
        target.lastLine = target.lastCheck + 900;
        target.file.Reset();
        ASSERT_TRUE(MoveFileExW(liveFolder.c_str(), realFolder.c_str(), 0));
        MakeLink(liveFolder, realFolder);
    }

    std::wstring const liveFolder = folder / L"live";
};

} // namespace

TEST_F(LinkedLogMoved, IsNeitherCopiedNorEmptiedNorWrittenOn)
{
    auto const bytes = ReadBytes(realFolder + L"\\" + LogName());
    LogAt(target, 0, L"after");
    EXPECT_EQ(NamesIn(realFolder), std::vector{LogName()});
    EXPECT_TRUE(ReadBytes(realFolder + L"\\" + LogName()) == bytes);
    EXPECT_FALSE(target.file);
}

// --- emptying ---

// The log has been copied, and is continued once the other link is deleted; until then its lines are lost.
TEST_F(LinkedLog, IsNeitherEmptiedNorWrittenOnWithAnotherHardLink)
{
    PrepareRotation();
    MakeHardLink(LogPath());
    auto const bytes = ReadBytes(LogPath());
    auto const later = static_cast<std::uint64_t>(target.lastLine) * 1'000;
    LogAt(target, later, L"lost");
    EXPECT_TRUE(ReadBytes(CopyPath()) == bytes);
    EXPECT_TRUE(ReadBytes(other) == bytes);
    EXPECT_FALSE(target.file);
    DeleteFileW(other.c_str());
    LogAt(target, later, L"after");
    EXPECT_TRUE(target.file);
    EXPECT_EQ(LastMessages(LogPath(), 1), std::vector<std::wstring>{L"after"});
}

// The link is deleted first, so its target keeps its content.
TEST_F(LinkedLog, IsNotEmptiedThroughALink)
{
    WriteBytes(LogPath(), wideMark + "content");
    ShownAsLink const link(LogPath());
    std::string led;
    DeleteFileCall const deleting([&](auto next, wchar_t const* path) {
        led = ReadBytes(path);
        return next(path);
    });
    EmptyFile(LogPath());
    EXPECT_EQ(led, wideMark + "content");
    EXPECT_FALSE(FileExists(LogPath()));
}

TEST_F(LinkedLog, IsNotEmptiedThroughALinkThatCannotBeDeleted)
{
    WriteBytes(LogPath(), wideMark + "content");
    ShownAsLink const link(LogPath());
    DeleteFileCall const fault(Failing(FALSE, ERROR_SHARING_VIOLATION));
    EmptyFile(LogPath());
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + "content");
}

TEST_F(LinkedLog, IsNotEmptiedWithAnotherHardLink)
{
    WriteBytes(LogPath(), wideMark + "content");
    MakeHardLink(LogPath());
    EmptyFile(LogPath());
    EXPECT_EQ(ReadBytes(other), wideMark + "content");
}

TEST_F(LinkedLog, IsNotEmptiedBelowALinkedFolder)
{
    UseLinkedFolder();
    auto const real = realFolder + L"\\" + LogName();
    WriteBytes(real, wideMark + "content");
    EmptyFile(target.filePath);
    EXPECT_EQ(ReadBytes(real), wideMark + "content");
}

TEST_F(LinkedLog, IsEmptiedWithoutALink)
{
    WriteBytes(LogPath(), wideMark + "content");
    EmptyFile(LogPath());
    EXPECT_EQ(ReadBytes(LogPath()), "");
}

TEST_F(LinkedLog, IsBegunAnewAtItsRotationWhereItHasBecomeALinkItself)
{
    PrepareRotation();
    ShownAsLink const link(LogPath());
    LogAt(target, 0, L"after");
    EXPECT_EQ(LastMessages(CopyPath(), 1), std::vector<std::wstring>{L"before"});
    EXPECT_TRUE(ReadBytes(LogPath()).starts_with(wideMark));
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"header", L"after"}));
}

// Without information about the file its links are unknown, and the log is continued.
TEST_F(LinkedLog, IsOpenedWhenItsLinksCannotBeCounted)
{
    WriteBytes(LogPath(), wideMark);
    std::vector<UniqueHandle> left;
    {
        GetFileInformationExCall const fault([&](auto, HANDLE file, auto, auto, auto) {
            left.emplace_back(file);
            return FALSE;
        });
        EXPECT_TRUE(target.Open());
    }
    EXPECT_EQ(left.size(), 1u);
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
}
