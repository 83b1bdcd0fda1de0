#include "simulator/base/UnixPath.h"
#include "simulator/base/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(UnixPathTest, AreWrittenWithSlashesAndReadBack)
{
    test::TemporaryFolder const folder;
    auto const inside = folder / L"an \u00F6 inside";
    sim::MakeFolder(inside);
    auto const path = sim::UnixPath(inside);
    EXPECT_TRUE(path.starts_with("/")) << path;
    EXPECT_TRUE(path.ends_with("/an \xC3\xB6 inside")) << path;
    EXPECT_EQ(path.find('\\'), std::string::npos) << path;
    sim::Remove(inside);
    EXPECT_EQ(sim::WindowsPath(L"/dev/null"), L"Z:\\dev\\null");
}

TEST(UnixPathTest, OfWindowsStayAsTheyAre)
{
    EXPECT_EQ(sim::WindowsPath(L"C:\\a/b"), L"C:\\a/b");
    EXPECT_EQ(sim::WindowsPath(L"a/b"), L"a/b");
    EXPECT_EQ(sim::WindowsPath(L""), L"");
}
