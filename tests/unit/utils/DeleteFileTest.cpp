#include "utils/DeleteFile.h"

#include "tests/support/Files.h"
#include "tests/support/RecordingHook.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

class DeleteFileTest : public testing::Test
{
  protected:
    DeleteFileTest() { WriteBytes(file, "text"); }

    void SetReadOnly()
    {
        ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY));
        m_attributes = GetFileAttributesW(file.c_str()); // Wine sets another one with it
    }

    RecordingHook::Line SecondAttempt() const
    {
        return {20,
                L"ZANTUtils",
                L"FileUtils",
                L"",
                L"",
                L"File '" + file + L"' is with read-only. Its attribute is: '" + std::to_wstring(m_attributes) +
                    L"'. UnSetting its read-only attr and retry deleting"};
    }

    static RecordingHook::Line Failure(std::wstring const& path, int error)
    {
        return {50,  L"ZANTUtils", L"FileUtils",
                L"", L"",          L"Failed to delete file: '" + path + L"' LastError:" + std::to_wstring(error)};
    }

    TemporaryFolder folder;
    std::wstring const file = folder / L"file";
    RecordingHook hook;

  private:
    DWORD m_attributes = 0;
};

using Lines = std::vector<RecordingHook::Line>;

} // namespace

TEST_F(DeleteFileTest, IsGoneWithoutAWord)
{
    EXPECT_TRUE(DeleteFileWithRetry(file));
    EXPECT_FALSE(FileExists(file));
    EXPECT_EQ(hook.Lines(), Lines());
}

TEST_F(DeleteFileTest, MayBeMissing)
{
    EXPECT_TRUE(DeleteFileWithRetry(folder / L"missing"));
    EXPECT_TRUE(DeleteFileWithRetry(folder / L"missing\\missing"));
    EXPECT_EQ(hook.Lines(), Lines());
}

TEST_F(DeleteFileTest, MayBeReadOnly)
{
    SetReadOnly();
    EXPECT_TRUE(DeleteFileWithRetry(file));
    EXPECT_FALSE(FileExists(file));
    EXPECT_EQ(hook.Lines(), Lines{SecondAttempt()});
}

TEST_F(DeleteFileTest, HasAllItsAttributesInTheMessage)
{
    GetFileAttributesCall const call(
        [](auto...) -> DWORD { return FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE; });
    DeleteFileCall const denied(Failing(FALSE, ERROR_ACCESS_DENIED));
    DeleteFileWithRetry(file);
    ASSERT_EQ(hook.Lines().size(), 2u);
    EXPECT_NE(std::get<5>(hook.Lines()[0]).find(L"Its attribute is: '35'."), std::wstring::npos);
}

TEST_F(DeleteFileTest, LosesAllItsAttributesForTheSecondAttempt)
{
    ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
    DWORD given = 0;
    SetFileAttributesCall const call([&given](auto system, auto path, DWORD attributes) {
        given = attributes;
        return system(path, attributes);
    });
    EXPECT_TRUE(DeleteFileWithRetry(file));
    EXPECT_EQ(given, DWORD{FILE_ATTRIBUTE_NORMAL});
}

TEST_F(DeleteFileTest, StaysWhenItIsLocked)
{
    UniqueHandle const lock(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(DeleteFileWithRetry(file));
    EXPECT_TRUE(FileExists(file));
    EXPECT_EQ(hook.Lines(), Lines{Failure(file, ERROR_SHARING_VIOLATION)});
}

TEST_F(DeleteFileTest, StaysWhenTheSecondAttemptFails)
{
    SetReadOnly();
    {
        DeleteFileCall const denied(Failing(FALSE, ERROR_ACCESS_DENIED));
        EXPECT_FALSE(DeleteFileWithRetry(file));
    }
    EXPECT_TRUE(FileExists(file));
    EXPECT_EQ(hook.Lines(), (Lines{SecondAttempt(), Failure(file, ERROR_ACCESS_DENIED)}));
}

TEST_F(DeleteFileTest, StaysWhenItsAttributesCannotBeSet)
{
    SetReadOnly();
    {
        SetFileAttributesCall const denied(Failing(FALSE, ERROR_ACCESS_DENIED));
        EXPECT_FALSE(DeleteFileWithRetry(file));
    }
    EXPECT_TRUE(FileExists(file));
    EXPECT_EQ(hook.Lines(), (Lines{SecondAttempt(), Failure(file, ERROR_ACCESS_DENIED)}));
}

TEST_F(DeleteFileTest, IsTriedOnceWhenItIsNotReadOnly)
{
    int attempts = 0;
    DeleteFileCall const denied([&](auto...) {
        ++attempts;
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    EXPECT_FALSE(DeleteFileWithRetry(file));
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(hook.Lines(), Lines{Failure(file, ERROR_ACCESS_DENIED)});
}

TEST_F(DeleteFileTest, IsTriedOnceWhenAccessIsNotWhatIsDenied)
{
    SetReadOnly();
    int attempts = 0;
    DeleteFileCall const locked([&](auto...) {
        ++attempts;
        SetLastError(ERROR_SHARING_VIOLATION);
        return FALSE;
    });
    EXPECT_FALSE(DeleteFileWithRetry(file));
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(hook.Lines(), Lines{Failure(file, ERROR_SHARING_VIOLATION)});
}

// Attributes that cannot be read have all bits set, that of read-only as well.
TEST_F(DeleteFileTest, IsNotTakenForReadOnlyWhenItsAttributesCannotBeRead)
{
    int calls = 0;
    GetFileAttributesCall const attributes(
        [&](auto next, wchar_t const* path) { return calls++ == 0 ? next(path) : INVALID_FILE_ATTRIBUTES; });
    DeleteFileCall const denied(Failing(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(DeleteFileWithRetry(file));
    EXPECT_EQ(hook.Lines(), Lines{Failure(file, ERROR_ACCESS_DENIED)});
}

TEST_F(DeleteFileTest, IsNoFolder)
{
    EXPECT_FALSE(DeleteFileWithRetry(folder.Path()));
    EXPECT_TRUE(FileExists(folder.Path()));
    EXPECT_EQ(hook.Lines(), Lines{Failure(folder.Path(), ERROR_ACCESS_DENIED)});
}
