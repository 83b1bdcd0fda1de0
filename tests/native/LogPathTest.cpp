#include "logging/LogPath.h"

#include <gtest/gtest.h>
#include <string>

using namespace zant;

TEST(LogPath, IsTakenApart)
{
    constexpr std::wstring_view path = L"C:\\logs\\HOV\\KZEB.log";
    EXPECT_EQ(FolderOf(path), L"C:\\logs\\HOV");
    EXPECT_EQ(FileNameOf(path), L"KZEB.log");
    EXPECT_EQ(ExtensionOf(path), L".log");
    EXPECT_EQ(WithoutExtension(path), L"C:\\logs\\HOV\\KZEB");
}

TEST(LogPath, WithoutAFolderIsAllName)
{
    EXPECT_EQ(FolderOf(L"KZEB.log"), L"");
    EXPECT_EQ(FileNameOf(L"KZEB.log"), L"KZEB.log");
}

TEST(LogPath, ADotOfAFolderBeginsNoExtension)
{
    EXPECT_EQ(ExtensionOf(L"C:\\a.b\\log"), L"");
    EXPECT_EQ(WithoutExtension(L"C:\\a.b\\log"), L"C:\\a.b\\log");
}

TEST(LogPath, TheLastDotBeginsTheExtension)
{
    EXPECT_EQ(ExtensionOf(L"a.b.log"), L".log");
    EXPECT_EQ(WithoutExtension(L"a.b.log"), L"a.b");
    EXPECT_EQ(ExtensionOf(L"a."), L".");
}

TEST(LogPath, OfNothingIsNothing)
{
    EXPECT_EQ(FolderOf(L""), L"");
    EXPECT_EQ(FileNameOf(L""), L"");
    EXPECT_EQ(ExtensionOf(L""), L"");
    EXPECT_EQ(WithoutExtension(L""), L"");
}

TEST(LogPath, ABareNameHasNeitherFolderNorDrive)
{
    EXPECT_TRUE(IsBareFileName(L"KZEB.log"));
    EXPECT_FALSE(IsBareFileName(L"a\\KZEB.log"));
    EXPECT_FALSE(IsBareFileName(L"a/KZEB.log"));
    EXPECT_FALSE(IsBareFileName(L"C:KZEB.log"));
}
