#include "doctor/log/ReadLog.h"

#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
#include <vector>
#include <windows.h>

using doctor::Entry;
using test::LogText;
using test::mark;

namespace
{

class ReadLog : public testing::Test
{
  protected:
    // The messages, or the whole text of what is no line of the app.
    std::vector<std::string> Read(std::size_t most = SIZE_MAX)
    {
        std::vector<std::string> messages;
        wasRead = doctor::ReadLog(m_path, [&](Entry const& entry) {
            messages.emplace_back(entry.line ? entry.line->message : "? " + std::string(entry.raw.text));
            return messages.size() < most;
        });
        return messages;
    }

    void Write(std::wstring const& text) { test::WriteBytes(m_path, test::Utf16(text)); }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"KZEB.log";
    bool wasRead = false;
    std::wstring const m_time = L"01/05/24 09:30:12:045";
};

} // namespace

TEST_F(ReadLog, GivesEachLineInItsOrder)
{
    Write(mark + LogText(m_time, L"one") + L"\r\nno line\r\n" + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(Read(), (std::vector<std::string>{"one", "? no line", "two"}));
    EXPECT_TRUE(wasRead);
}

TEST_F(ReadLog, EndsWhenItIsToldTo)
{
    Write(mark + LogText(m_time, L"one") + L"\r\n" + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(Read(1), std::vector<std::string>{"one"});
    EXPECT_FALSE(wasRead);
}

TEST_F(ReadLog, SeparatesLinesThatAKilledProcessGlued)
{
    auto const line = LogText(m_time, L"one");
    Write(mark + line + line + line.substr(0, 29) + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(Read(), (std::vector<std::string>{"one", "one", "? 01/05/24 09:30:12:045 | [INFO", "two"}));
    EXPECT_EQ(Read(2).size(), 2u);
}

TEST_F(ReadLog, ReadsAFileLargerThanABlock)
{
    std::wstring text = mark;
    constexpr std::size_t count = 5'000;
    for (std::size_t line = 0; line < count; ++line)
    {
        text += LogText(m_time, std::to_wstring(line)) + L"\r\n";
    }
    Write(text);
    auto const messages = Read();
    ASSERT_EQ(messages.size(), count);
    for (std::size_t line = 0; line < count; ++line)
    {
        ASSERT_EQ(messages[line], std::to_string(line));
    }
}

TEST_F(ReadLog, LetsOthersWriteRenameAndDeleteTheFile)
{
    Write(mark + LogText(m_time, L"one") + L"\r\n");
    constexpr DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    doctor::ReadLog(m_path, [&](Entry const&) {
        zant::UniqueHandle const writer(
            CreateFileW(m_path.c_str(), GENERIC_WRITE, everything, nullptr, TRUNCATE_EXISTING, 0, nullptr));
        EXPECT_TRUE(writer);
        EXPECT_TRUE(MoveFileW(m_path.c_str(), (m_path + L"-moved").c_str()));
        EXPECT_TRUE(DeleteFileW((m_path + L"-moved").c_str()));
        return true;
    });
    EXPECT_FALSE(test::FileExists(m_path));
}

TEST_F(ReadLog, SaysWhichFileCannotBeRead)
{
    try
    {
        Read();
        FAIL();
    }
    catch (doctor::Error const& error)
    {
        EXPECT_NE(std::string_view(error.what()).find("KZEB.log: "), std::string_view::npos) << error.what();
        EXPECT_TRUE(std::string_view(error.what()).ends_with("(2)")) << error.what();
    }
}
