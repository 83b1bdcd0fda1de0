#include "simulator/base/Files.h"

#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

class FilesTest : public testing::Test
{
  protected:
    FilesTest() { test::WriteBytes(m_path, "old"); }

    sim::Handle Opened() const
    {
        return sim::Handle(CreateFileW(m_path.c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                       0, nullptr));
    }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"state.txt";
    std::wstring const m_written = m_path + L".new";
};

} // namespace

TEST_F(FilesTest, AreReplacedOnceTheirReaderHasClosedThem)
{
    auto reader = Opened();
    std::atomic<bool> hasEnded = false;
    std::thread writer([&] {
        EXPECT_NO_THROW(sim::ReplaceBytes(m_path, "new"));
        hasEnded = true;
    });
    while (!hasEnded && !test::FileExists(m_written))
    {
        SwitchToThread();
    }
    reader = {};
    writer.join();
    EXPECT_EQ(test::ReadBytes(m_path), "new");
    EXPECT_FALSE(test::FileExists(m_written));
}

TEST_F(FilesTest, AreNotReplacedWhileTheyStayOpen)
{
    auto const reader = Opened();
    EXPECT_THROW(sim::ReplaceBytes(m_path, "new"), sim::Error);
    EXPECT_EQ(test::ReadBytes(m_path), "old");
    EXPECT_FALSE(test::FileExists(m_written));
}
