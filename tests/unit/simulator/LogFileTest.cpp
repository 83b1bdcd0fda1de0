#include "simulator/log/LogFile.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/log/LogLine.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

using Lines = std::vector<std::wstring>;

std::string const mark = "\xFF\xFE";

class LogFileTest : public testing::Test
{
  protected:
    void Write(std::string const& bytes) const { test::WriteBytes(m_path, bytes); }

    test::TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"KZEB.log";
    sim::LogFile m_file{m_path};
};

} // namespace

TEST_F(LogFileTest, GivesEachLineOnce)
{
    EXPECT_EQ(m_file.NewLines(), Lines{}); // no file yet
    Write(mark);
    EXPECT_EQ(m_file.NewLines(), Lines{});
    Write(mark + test::Utf16(L"one\r\ntwo\r\n"));
    EXPECT_EQ(m_file.NewLines(), (Lines{L"one", L"two"}));
    Write(mark + test::Utf16(L"one\r\ntwo\r\nthree\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"three"});
}

TEST_F(LogFileTest, WaitsForTheEndOfALine)
{
    auto const whole = mark + test::Utf16(L"one\r\n");
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        Write(whole.substr(0, length));
        EXPECT_EQ(m_file.NewLines(), Lines{});
    }
    Write(whole);
    EXPECT_EQ(m_file.NewLines(), Lines{L"one"});
}

TEST_F(LogFileTest, BeginsAnewWithAShorterFile)
{
    Write(mark + test::Utf16(L"a long line\r\n"));
    m_file.NewLines();
    Write(mark + test::Utf16(L"new\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"new"});
}

// A rotated log is emptied and goes on without a mark.
TEST_F(LogFileTest, ReadsAFileWithoutAMark)
{
    Write(mark + test::Utf16(L"before the rotation\r\n"));
    m_file.NewLines();
    Write("");
    EXPECT_EQ(m_file.NewLines(), Lines{});
    Write(test::Utf16(L"one\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"one"});
    Write(test::Utf16(L"one\r\ntwo\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"two"});
}

TEST_F(LogFileTest, GivesNoLineOfAFileThatWasMadeLonger)
{
    Write(mark + test::Utf16(L"one\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"one"});
    m_file.GrowTo(1'000'000);
    EXPECT_EQ(test::ReadBytes(m_path).size(), 1'000'000u);
    EXPECT_EQ(m_file.NewLines(), Lines{});
    Write(test::Utf16(L"after\r\n"));
    EXPECT_EQ(m_file.NewLines(), Lines{L"after"});
}

TEST_F(LogFileTest, CannotMakeAMissingFileLonger)
{
    EXPECT_THROW(m_file.GrowTo(1), sim::Error);
}

TEST_F(LogFileTest, FindsTheLogsOfAFolderAndBelow)
{
    EXPECT_THROW(sim::LogFile::Find(m_folder.Path()), sim::Error);
    Write(mark);
    test::WriteBytes(m_folder / L"notes.txt", "");
    sim::MakeFolder(m_folder / L"A\\B");
    test::WriteBytes(m_folder / L"A\\B\\old.log", "");
    EXPECT_EQ(sim::LogFile::Find(m_folder.Path()), (Lines{m_folder / L"A\\B\\old.log", m_path}));
    EXPECT_EQ(sim::LogFile::Find(m_path), Lines{m_path});
    EXPECT_EQ(sim::LogFile::Find(m_folder / L"notes.txt"), Lines{m_folder / L"notes.txt"});
    EXPECT_THROW(sim::LogFile::Find(m_folder / L"missing"), sim::Error);
}
