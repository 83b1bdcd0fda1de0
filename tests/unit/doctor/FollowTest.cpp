#include "doctor/show/Follow.h"

#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"

#include <gtest/gtest.h>
#include <windows.h>

using test::LogText;
using test::mark;

namespace
{

class Follow : public testing::Test
{
  protected:
    std::vector<std::string> New()
    {
        std::vector<std::string> messages;
        m_follower.TakeNew([&](doctor::Entry const& entry) {
            messages.emplace_back(entry.line ? entry.line->message : entry.raw.text);
            return true;
        });
        return messages;
    }

    void Write(std::wstring const& text)
    {
        m_written = text;
        test::WriteBytes(m_path, test::Utf16(m_written));
    }

    void Append(std::wstring const& text) { Write(m_written + text); }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"KZEB.log";
    std::wstring m_written;
    doctor::Follower m_follower{m_path};
    std::wstring const m_time = L"01/05/24 09:30:12:045";
};

} // namespace

TEST_F(Follow, GivesNothingUntilTheFileIsThere)
{
    EXPECT_EQ(New(), std::vector<std::string>{});
    Write(mark + LogText(m_time, L"one") + L"\r\n");
    EXPECT_EQ(New(), std::vector<std::string>{"one"});
    EXPECT_EQ(New(), std::vector<std::string>{});
}

TEST_F(Follow, GivesNothingUntilTheFolderOfTheFileIsThere)
{
    doctor::Follower follower(m_folder / L"missing\\KZEB.log");
    auto entries = 0;
    follower.TakeNew([&](doctor::Entry const&) { return ++entries; });
    EXPECT_EQ(entries, 0);
}

TEST_F(Follow, FailsWhereTheFileIsThereAndCannotBeOpened)
{
    doctor::Follower follower(m_folder.Path()); // a folder has no lines
    EXPECT_THROW(follower.TakeNew([](doctor::Entry const&) { return true; }), doctor::Error);
}

TEST_F(Follow, GivesALineWhenItIsWhole)
{
    Write(mark + LogText(m_time, L"o"));
    EXPECT_EQ(New(), std::vector<std::string>{});
    Append(L"ne\r");
    EXPECT_EQ(New(), std::vector<std::string>{});
    Append(L"\n" + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(New(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(Follow, BeginsAgainWithAFileThatWasRotated)
{
    Write(mark + LogText(m_time, L"one") + L"\r\n" + LogText(m_time, L"cut o"));
    EXPECT_EQ(New(), std::vector<std::string>{"one"});
    Write(mark + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(New(), std::vector<std::string>{"two"});
}

TEST_F(Follow, GoesOnWithAFileThatWasEmptiedAndHasNoMark)
{
    Write(mark + LogText(m_time, L"one") + L"\r\n");
    New();
    Write(L"");
    EXPECT_EQ(New(), std::vector<std::string>{});
    Write(LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(New(), std::vector<std::string>{"two"});
    Append(LogText(m_time, L"three") + L"\r\n");
    EXPECT_EQ(New(), std::vector<std::string>{"three"});
}

TEST_F(Follow, GoesOnWhereTheFileWasAwayForAWhile)
{
    Write(mark + LogText(m_time, L"one") + L"\r\n");
    New();
    ASSERT_TRUE(DeleteFileW(m_path.c_str()));
    EXPECT_EQ(New(), std::vector<std::string>{});
    Write(mark + LogText(m_time, L"two") + L"\r\n");
    EXPECT_EQ(New(), std::vector<std::string>{"two"});
}
