#include "simulator/base/Files.h"

#include "simulator/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>

#include <vector>

WRAP(MoveFileCall, MoveFileExW);
WRAP(SleepCall, Sleep);

namespace
{

// A file that others may have open when it is replaced.
class FilesTest : public testing::Test
{
  protected:
    FilesTest() { test::WriteBytes(m_path, "old"); }

    // The next so many replacements fail with that error.
    void FailNext(unsigned moves, DWORD error)
    {
        m_failures = moves;
        m_error = error;
    }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"state.txt";
    std::wstring const m_written = m_path + L".new";
    std::vector<DWORD> m_pauses;

  private:
    unsigned m_failures = 0;
    DWORD m_error = ERROR_SUCCESS;
    test::MoveFileCall const m_move{[this](auto next, wchar_t const* from, wchar_t const* to, DWORD flags) {
        return m_failures > 0 ? (--m_failures, SetLastError(m_error), FALSE) : next(from, to, flags);
    }};
    test::SleepCall const m_sleep{[this](auto, DWORD milliseconds) { m_pauses.push_back(milliseconds); }};
};

} // namespace

TEST_F(FilesTest, AreReplacedOnceTheirReaderHasClosedThem)
{
    for (auto const error : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION})
    {
        m_pauses.clear();
        FailNext(200, static_cast<DWORD>(error));
        sim::ReplaceBytes(m_path, "new " + std::to_string(error));
        EXPECT_EQ(test::ReadBytes(m_path), "new " + std::to_string(error));
        EXPECT_EQ(m_pauses, std::vector<DWORD>(200, 5)); // a second
        EXPECT_FALSE(test::FileExists(m_written));
    }
}

TEST_F(FilesTest, AreNotReplacedWhileTheyStayOpen)
{
    FailNext(201, ERROR_ACCESS_DENIED);
    EXPECT_THROW(sim::ReplaceBytes(m_path, "new"), sim::Error);
    EXPECT_EQ(m_pauses.size(), 200u);
    EXPECT_EQ(test::ReadBytes(m_path), "old");
    EXPECT_FALSE(test::FileExists(m_written));
}

TEST_F(FilesTest, AreNotWaitedForAfterAnotherError)
{
    FailNext(1, ERROR_DISK_FULL);
    EXPECT_THROW(sim::ReplaceBytes(m_path, "new"), sim::Error);
    EXPECT_TRUE(m_pauses.empty());
    EXPECT_EQ(test::ReadBytes(m_path), "old");
    EXPECT_FALSE(test::FileExists(m_written));
}
