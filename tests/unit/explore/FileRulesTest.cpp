#include "tests/unit/explore/EitherSystem.h"

using namespace test;

namespace
{

class FileRules : public EitherSystem
{
  protected:
    // The error of an opening that fails.
    DWORD ErrorOfOpening(std::wstring const& file, DWORD access, DWORD share, DWORD disposition = OPEN_EXISTING)
    {
        SetLastError(ERROR_SUCCESS);
        return Opened(file, access, share, disposition) ? ERROR_SUCCESS : GetLastError();
    }

    // The error of a call that fails.
    static DWORD ErrorOf(BOOL result) { return result ? ERROR_SUCCESS : GetLastError(); }

    std::wstring const path = Path(L"KZEB.log");
    std::wstring const otherPath = Path(L"KZEB 2024-1-5 09-30-12.log");
};

} // namespace

ON_EITHER_SYSTEM(FileRules);

TEST_P(FileRules, AFileThatIsNotThereCannotBeOpened)
{
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, shareAll), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareAll, TRUNCATE_EXISTING), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(ErrorOfOpening(Path(L"none\\KZEB.log"), GENERIC_WRITE, shareAll, CREATE_NEW),
              DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_FALSE(IsThere(path));
}

TEST_P(FileRules, ANewFileReplacesNone)
{
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareAll, CREATE_NEW), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareAll, CREATE_NEW), DWORD{ERROR_FILE_EXISTS});
}

TEST_P(FileRules, OpenAlwaysCreatesWhatIsNotThereAndKeepsWhatIs)
{
    EXPECT_TRUE(Opened(path, GENERIC_WRITE, shareAll, OPEN_ALWAYS).Write("text"));
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareAll, OPEN_ALWAYS), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ContentOf(path), "text");
}

TEST_P(FileRules, TruncatingEmptiesAFileThatOthersHaveOpen)
{
    MakeFile(path, "text");
    Opened const other(path, GENERIC_WRITE, shareReadWrite);
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareReadWrite, TRUNCATE_EXISTING), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(other.Size(), 0);
}

TEST_P(FileRules, TheCaseOfNamesDoesNotMatter)
{
    MakeFile(path, "text");
    EXPECT_EQ(ContentOf(Path(L"kzeb.LOG")), "text");
}

TEST_P(FileRules, OpeningsThatShareItReadAndWriteAFileAtTheSameTime)
{
    MakeFile(path);
    Opened const one(path, GENERIC_WRITE, shareReadWrite);
    Opened const two(path, GENERIC_WRITE, shareReadWrite);
    EXPECT_TRUE(one.Write("one"));
    EXPECT_TRUE(two.Seek(0, FILE_END));
    EXPECT_TRUE(two.Write("two"));
    EXPECT_EQ(ContentOf(path), "onetwo");
}

TEST_P(FileRules, AnOpeningIsRefusedWhatAnotherOneDoesNotShare)
{
    MakeFile(path);
    Opened const one(path, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, shareAll), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_WRITE, shareAll), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(ErrorOfOpening(path, DELETE, shareAll), DWORD{ERROR_SHARING_VIOLATION});
}

TEST_P(FileRules, AnOpeningIsRefusedThatDoesNotShareWhatAnotherOneHas)
{
    MakeFile(path);
    Opened const one(path, GENERIC_WRITE, shareAll);
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, FILE_SHARE_READ), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, shareNone), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, FILE_SHARE_WRITE), DWORD{ERROR_SUCCESS});
}

TEST_P(FileRules, EachOpeningHasAPlaceOfItsOwn)
{
    MakeFile(path, "0123456789");
    Opened const one(path, GENERIC_READ, shareAll);
    Opened const two(path, GENERIC_READ, shareAll);
    EXPECT_EQ(one.Read(4), "0123");
    EXPECT_EQ(two.Read(2), "01");
    EXPECT_EQ(one.Read(100), "456789");
    EXPECT_EQ(one.Read(100), "");
}

TEST_P(FileRules, WritingOverwritesAndExtends)
{
    MakeFile(path, "0123");
    Opened const file(path, GENERIC_WRITE, shareAll);
    EXPECT_TRUE(file.Seek(2));
    EXPECT_TRUE(file.Write("abcd"));
    EXPECT_TRUE(file.Seek(8));
    EXPECT_TRUE(file.Write("e"));
    EXPECT_EQ(ContentOf(path), std::string("01abcd\0\0e", 9));
}

TEST_P(FileRules, ThePlaceIsCountedFromBeginCurrentOrEnd)
{
    MakeFile(path, "0123456789");
    Opened const file(path, GENERIC_READ, shareAll);
    EXPECT_TRUE(file.Seek(-3, FILE_END));
    EXPECT_EQ(file.Read(1), "7");
    EXPECT_TRUE(file.Seek(-2, FILE_CURRENT));
    EXPECT_EQ(file.Read(1), "6");
    EXPECT_FALSE(file.Seek(-1));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NEGATIVE_SEEK});
    EXPECT_EQ(file.Read(1), "7");
}

TEST_P(FileRules, TheEndIsSetAtThePlace)
{
    MakeFile(path, "0123456789");
    Opened const file(path, GENERIC_WRITE, shareAll);
    EXPECT_TRUE(file.Seek(4));
    EXPECT_TRUE(SetEndOfFile(file.Get()));
    EXPECT_EQ(ContentOf(path), "0123");
}

TEST_P(FileRules, AFileIsReadOnlyByAnOpeningForReading)
{
    MakeFile(path, "text");
    Opened const file(path, GENERIC_WRITE, shareAll);
    char character = 0;
    DWORD read = 0;
    EXPECT_EQ(ErrorOf(ReadFile(file.Get(), &character, 1, &read, nullptr)), DWORD{ERROR_ACCESS_DENIED});
}

TEST_P(FileRules, OnAFullDiskNothingIsWritten)
{
    Opened const file(OpenOnFullDisk());
    ASSERT_TRUE(file);
    DWORD written = 1;
    EXPECT_EQ(ErrorOf(WriteFile(file.Get(), "text", 4, &written, nullptr)), DWORD{ERROR_DISK_FULL});
    EXPECT_EQ(written, 0u);
}

TEST_P(FileRules, AClosedHandleIsNone)
{
    MakeFile(path);
    Opened file(path, GENERIC_WRITE, shareAll);
    auto* const handle = file.Get();
    file.Close();
    EXPECT_EQ(ErrorOf(CloseHandle(handle)), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_FALSE(Opened(handle).Write("text"));
}

TEST_P(FileRules, ADeletedFileIsNotThere)
{
    MakeFile(path);
    EXPECT_TRUE(DeleteFileW(path.c_str()));
    EXPECT_FALSE(IsThere(path));
    EXPECT_EQ(ErrorOf(DeleteFileW(path.c_str())), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_P(FileRules, AFileThatIsOpenCannotBeDeletedUnlessThatIsShared)
{
    MakeFile(path);
    Opened const file(path, GENERIC_WRITE, shareReadWrite);
    EXPECT_EQ(ErrorOf(DeleteFileW(path.c_str())), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_TRUE(IsThere(path));
}

TEST_P(FileRules, AFolderIsNoFile)
{
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    EXPECT_EQ(ErrorOf(DeleteFileW(path.c_str())), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(ErrorOfOpening(path, GENERIC_READ, shareAll), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_NE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_P(FileRules, AFolderIsCreatedInOneThatIsThereAndOnce)
{
    EXPECT_TRUE(CreateDirectoryW(Path(L"a").c_str(), nullptr));
    EXPECT_EQ(ErrorOf(CreateDirectoryW(Path(L"a").c_str(), nullptr)), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(ErrorOf(CreateDirectoryW(Path(L"b\\c").c_str(), nullptr)), DWORD{ERROR_PATH_NOT_FOUND});
}

TEST_P(FileRules, WhatIsNotThereHasNoAttributes)
{
    EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
    MakeFile(path);
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT), 0u);
}

TEST_P(FileRules, ARenamedFileHasItsNewNameOnly)
{
    MakeFile(path, "text");
    EXPECT_TRUE(MoveFileExW(path.c_str(), otherPath.c_str(), 0));
    EXPECT_FALSE(IsThere(path));
    EXPECT_EQ(ContentOf(otherPath), "text");
    EXPECT_EQ(ErrorOf(MoveFileExW(path.c_str(), otherPath.c_str(), 0)), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_P(FileRules, RenamingReplacesNothing)
{
    MakeFile(path, "text");
    MakeFile(otherPath, "other");
    EXPECT_EQ(ErrorOf(MoveFileExW(path.c_str(), otherPath.c_str(), 0)), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(ContentOf(path), "text");
    EXPECT_EQ(ContentOf(otherPath), "other");
}

TEST_P(FileRules, AFileThatIsOpenCannotBeRenamedUnlessDeletingIsShared)
{
    MakeFile(path, "text");
    {
        Opened const file(path, GENERIC_READ, shareReadWrite);
        EXPECT_EQ(ErrorOf(MoveFileExW(path.c_str(), otherPath.c_str(), 0)), DWORD{ERROR_SHARING_VIOLATION});
    }
    Opened const file(path, GENERIC_READ, shareAll);
    EXPECT_TRUE(MoveFileExW(path.c_str(), otherPath.c_str(), 0));
    EXPECT_EQ(file.Read(100), "text");
}

TEST_P(FileRules, HardLinksAreCounted)
{
    MakeFile(path, "text");
    MakeHardLink(otherPath, path);
    Opened const file(path, GENERIC_READ, shareAll);
    FILE_STANDARD_INFO information = {};
    EXPECT_TRUE(GetFileInformationByHandleEx(file.Get(), FileStandardInfo, &information, sizeof information));
    EXPECT_EQ(information.NumberOfLinks, 2u);
    EXPECT_EQ(information.EndOfFile.QuadPart, 4);
    EXPECT_EQ(ContentOf(otherPath), "text");
}

TEST_P(FileRules, ASearchFindsTheNamesThatBeginSoAsTheyWereAtItsStart)
{
    for (auto const* const name : {L"KZEB.log", L"KZEB 1.log", L"other.log", L"kzeb 2.log"})
    {
        MakeFile(Path(name));
    }
    WIN32_FIND_DATAW found;
    auto* const search = FindFirstFileW(Path(L"KZEB*").c_str(), &found);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    MakeFile(Path(L"KZEB 3.log"));
    EXPECT_TRUE(DeleteFileW(Path(L"kzeb 2.log").c_str()));
    std::vector<std::wstring> names = {found.cFileName};
    while (FindNextFileW(search, &found))
    {
        names.emplace_back(found.cFileName);
    }
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    EXPECT_TRUE(FindClose(search));
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"KZEB 1.log", L"KZEB.log", L"kzeb 2.log"}));
}

TEST_P(FileRules, ASearchThatFindsNothingSaysSo)
{
    WIN32_FIND_DATAW found;
    EXPECT_EQ(FindFirstFileW(Path(L"KZEB*").c_str(), &found), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

namespace
{

bool DeleteOnClose(HANDLE file, bool isDeleted)
{
    FILE_DISPOSITION_INFO disposition = {static_cast<BOOLEAN>(isDeleted)};
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

} // namespace

TEST_P(FileRules, AFileToBeDeletedIsSoWhenItIsClosed)
{
    Opened file(path, GENERIC_WRITE | DELETE, shareNone, OPEN_ALWAYS);
    EXPECT_TRUE(DeleteOnClose(file.Get(), true));
    EXPECT_TRUE(file.Write("text"));
    EXPECT_NE(ErrorOfOpening(path, GENERIC_READ, shareAll), DWORD{ERROR_SUCCESS});
    file.Close();
    EXPECT_FALSE(IsThere(path));
}

TEST_P(FileRules, AFileIsKeptThatIsNotToBeDeletedAfterAll)
{
    Opened file(path, GENERIC_WRITE | DELETE, shareNone, OPEN_ALWAYS);
    EXPECT_TRUE(DeleteOnClose(file.Get(), true));
    EXPECT_TRUE(file.Write("text"));
    EXPECT_TRUE(DeleteOnClose(file.Get(), false));
    file.Close();
    EXPECT_EQ(ContentOf(path), "text");
}

TEST_P(FileRules, DeletingOnCloseNeedsThatAccess)
{
    Opened const file(path, GENERIC_WRITE, shareNone, OPEN_ALWAYS);
    EXPECT_EQ(ErrorOf(DeleteOnClose(file.Get(), true)), DWORD{ERROR_ACCESS_DENIED});
}
