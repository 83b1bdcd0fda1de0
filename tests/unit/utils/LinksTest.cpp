#include "utils/Links.h"

#include "tests/support/Files.h"
#include "tests/support/MakeLink.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
// After windows.h, whose types it needs.
#include <shlwapi.h>

namespace test
{

REPLACEABLE(PathRemoveFileSpecCall, PathRemoveFileSpecW);

} // namespace test

WRAP(PathRemoveFileSpecCall, PathRemoveFileSpecW);

using namespace test;
using namespace zant;

namespace
{

class Links : public testing::Test
{
  protected:
    Links() { WriteBytes(file, "text"); }

    TemporaryFolder folder;
    std::wstring const file = folder / L"file";
};

// Reports one path as a reparse point.
auto AsLink(std::wstring const& link)
{
    return [=](auto next, wchar_t const* path) -> DWORD {
        return path == link ? FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT : next(path);
    };
}

void CreateFolder(std::wstring const& path)
{
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
}

void MakeHardLink(std::wstring const& link, std::wstring const& target)
{
    ASSERT_TRUE(CreateHardLinkW(link.c_str(), target.c_str(), nullptr));
}

} // namespace

TEST_F(Links, AreNoneOfAPlainFile)
{
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::NoLink);
    EXPECT_EQ(CheckLinks(file, false), LinkCheck::NoLink);
}

TEST_F(Links, AreNoneOfWhatDoesNotExist)
{
    EXPECT_EQ(CheckLinks(folder / L"missing", true), LinkCheck::NoLink);
    EXPECT_EQ(CheckLinks(folder / L"missing\\missing", true), LinkCheck::NoLink);
    EXPECT_EQ(CheckLinks(L"", true), LinkCheck::NoLink);
}

TEST_F(Links, HaveTheNumbersThatCallersCompareWith)
{
    EXPECT_EQ(static_cast<int>(LinkCheck::NoLink), 0);
    EXPECT_EQ(static_cast<int>(LinkCheck::IsLink), 1);
    EXPECT_EQ(static_cast<int>(LinkCheck::ParentIsLink), 2);
    EXPECT_EQ(static_cast<int>(LinkCheck::SeveralLinks), 3);
    EXPECT_EQ(sizeof(LinkCheck), 4u);
}

TEST_F(Links, AreToldOfAFileThatIsOne)
{
    GetFileAttributesCall const call(AsLink(file));
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::IsLink);
    EXPECT_EQ(CheckLinks(file, false), LinkCheck::IsLink);
}

TEST_F(Links, AreToldOfAFolderThatIsOne)
{
    CreateFolder(folder / L"real");
    MakeLink(folder / L"link", folder / L"real");
    EXPECT_EQ(CheckLinks(folder / L"link", true), LinkCheck::IsLink);
    EXPECT_EQ(CheckLinks(folder / L"real", true), LinkCheck::NoLink);
}

TEST_F(Links, AreToldOfAParent)
{
    CreateFolder(folder / L"real");
    MakeLink(folder / L"link", folder / L"real");
    WriteBytes(folder / L"real\\file", "");
    for (auto const checkHardLinks : {true, false})
    {
        EXPECT_EQ(CheckLinks(folder / L"link\\file", checkHardLinks), LinkCheck::ParentIsLink);
        EXPECT_EQ(CheckLinks(folder / L"link\\missing", checkHardLinks), LinkCheck::ParentIsLink);
        EXPECT_EQ(CheckLinks(folder / L"real\\file", checkHardLinks), LinkCheck::NoLink);
    }
}

TEST_F(Links, AreToldOfAFolderHighAbove)
{
    CreateFolder(folder / L"real");
    CreateFolder(folder / L"real\\a");
    CreateFolder(folder / L"real\\a\\b");
    MakeLink(folder / L"link", folder / L"real");
    EXPECT_EQ(CheckLinks(folder / L"link\\a\\b\\file", true), LinkCheck::ParentIsLink);
}

// The walk continues above a folder that cannot be examined, up to and including the root.
TEST_F(Links, AreLookedForUpToTheRoot)
{
    std::vector<std::wstring> asked;
    GetFileAttributesCall const call([&](auto, wchar_t const* path) {
        asked.push_back(path);
        return INVALID_FILE_ATTRIBUTES;
    });
    EXPECT_EQ(CheckLinks(L"C:\\a\\b\\file", false), LinkCheck::NoLink);
    EXPECT_EQ(asked, (std::vector<std::wstring>{L"C:\\a\\b\\file", L"C:\\a\\b", L"C:\\a", L"C:\\"}));
}

// The second call would be one of a walk without an end.
TEST_F(Links, AreNotLookedForFurtherWhereTheSystemRemovesNothing)
{
    auto calls = 0;
    PathRemoveFileSpecCall const call([&](auto, wchar_t*) { return static_cast<BOOL>(++calls == 1); });
    EXPECT_EQ(CheckLinks(file, false), LinkCheck::NoLink);
    EXPECT_EQ(calls, 1);
}

TEST_F(Links, AreToldOfTheRoot)
{
    GetFileAttributesCall const call(AsLink(L"C:\\"));
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::ParentIsLink);
}

TEST_F(Links, OfAFileWithSeveralAreTold)
{
    MakeHardLink(folder / L"other", file);
    EXPECT_TRUE(HasSeveralLinks(file));
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::SeveralLinks);
    EXPECT_EQ(CheckLinks(folder / L"other", true), LinkCheck::SeveralLinks);
    EXPECT_EQ(CheckLinks(file, false), LinkCheck::NoLink);
    DeleteFileW((folder / L"other").c_str());
    EXPECT_FALSE(HasSeveralLinks(file));
}

// A link at the path itself takes precedence over several hard links.
TEST_F(Links, AreToldInOrder)
{
    MakeHardLink(folder / L"other", file);
    GetFileAttributesCall const parent(AsLink(folder.Path()));
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::SeveralLinks);
    EXPECT_EQ(CheckLinks(file, false), LinkCheck::ParentIsLink);
    GetFileAttributesCall const itself(AsLink(file));
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::IsLink);
}

TEST_F(Links, AreCountedWhileOthersReadAndWriteTheFile)
{
    MakeHardLink(folder / L"other", file);
    UniqueHandle const writer(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(HasSeveralLinks(file));
}

TEST_F(Links, AreNoSeveralOfAFileThatCannotBeOpened)
{
    MakeHardLink(folder / L"other", file);
    UniqueHandle const other(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(HasSeveralLinks(file));
    EXPECT_FALSE(HasSeveralLinks(folder / L"missing"));
    EXPECT_FALSE(HasSeveralLinks(folder.Path()));
}

TEST_F(Links, AreCountedWithoutLeavingTheFileOpen)
{
    HasSeveralLinks(file);
    UniqueHandle const alone(
        CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(alone);
}

TEST_F(Links, OfAFileThatTellsNothingLeaveItOpen)
{
    MakeHardLink(folder / L"other", file);
    UniqueHandle left;
    {
        GetFileInformationExCall const fault([&](auto, HANDLE handle, auto, auto, auto) {
            left = UniqueHandle(handle);
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        EXPECT_FALSE(HasSeveralLinks(file));
    }
    UniqueHandle const alone(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(alone);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
}

TEST_F(Links, AreTakenToBeAboveWhenMemoryIsShort)
{
    ShortMemory const none;
    EXPECT_EQ(CheckLinks(file, true), LinkCheck::ParentIsLink);
}
