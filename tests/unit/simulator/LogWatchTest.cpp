#include "simulator/log/LogWatch.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

// The limit is for a watch that misses something; none waits for it otherwise.
bool Tells(sim::LogWatch& watch)
{
    constexpr DWORD limitMilliseconds = 10'000;
    auto const told = WaitForSingleObject(watch.Get(), limitMilliseconds) == WAIT_OBJECT_0;
    watch.Next();
    return told;
}

} // namespace

TEST(LogWatchTest, MakesTheFolderThatTheAppFinds)
{
    test::TemporaryFolder const folder;
    sim::LogWatch const watch(folder / L"Temp\\outer\\inner\\the.log");
    EXPECT_TRUE(test::FileExists(folder / L"Temp"));
    EXPECT_FALSE(test::FileExists(folder / L"Temp\\outer"));
}

TEST(LogWatchTest, TellsOfWhatIsWrittenIntoFoldersMadeOneRightAfterTheOther)
{
    // Many, as only those made in quick succession can be missed.
    for (int round = 0; round < 100; ++round)
    {
        test::TemporaryFolder const folder;
        auto const path = folder / L"outer\\inner\\the.log";
        sim::LogWatch watch(path);
        CreateDirectoryW((folder / L"outer").c_str(), nullptr);
        CreateDirectoryW((folder / L"outer\\inner").c_str(), nullptr);
        test::WriteBytes(path, "begun");
        ASSERT_TRUE(Tells(watch));
        // What else the making of all that gave rise to.
        while (WaitForSingleObject(watch.Get(), 0) == WAIT_OBJECT_0)
        {
            watch.Next();
        }
        test::WriteBytes(path, "written");
        ASSERT_TRUE(Tells(watch));
    }
}
