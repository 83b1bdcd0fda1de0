#include "doctor/log/LogFiles.h"

#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/doctor/LogText.h"
#include "utils/UniqueHandle.h"
#include "utils/Utf8.h"

#include <filesystem>
#include <gtest/gtest.h>

WRAP(FindFirstFileCall, FindFirstFileW);
WRAP(FindNextFileCall, FindNextFileW);
WRAP(GetFileAttributesCall, GetFileAttributesW);

using doctor::FindLogs;

namespace
{

class LogFiles : public testing::Test
{
  protected:
    void Write(std::wstring const& name, std::wstring const& time)
    {
        auto const path = m_folder / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        test::WriteBytes(path, test::Utf16(test::mark + test::LogText(time, L"text") + L"\r\n"));
    }

    // Nobody else opens it while that is held.
    zant::UniqueHandle Lock(std::wstring const& name)
    {
        return zant::UniqueHandle(
            CreateFileW((m_folder / name).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    // Keeps what is unread.
    std::vector<std::wstring> NamesAt(std::vector<std::filesystem::path> const& paths)
    {
        auto const found = FindLogs(paths);
        m_unread = found.unread;
        std::vector<std::wstring> names;
        for (auto const& path : found.files)
        {
            names.push_back(path.lexically_relative(m_folder.Path()).native());
        }
        return names;
    }

    void ExpectUnread(std::wstring const& name, std::string const& error)
    {
        ASSERT_EQ(m_unread.size(), 1u);
        EXPECT_TRUE(m_unread[0].starts_with(zant::ToUtf8(m_folder / name).value() + ": ")) << m_unread[0];
        EXPECT_TRUE(m_unread[0].ends_with(error)) << m_unread[0];
    }

    std::string FailureAt(std::wstring const& path)
    try
    {
        FindLogs({path});
        return "";
    }
    catch (doctor::Error const& error)
    {
        return error.what();
    }

    test::TemporaryFolder m_folder;
    std::vector<std::string> m_unread;
};

} // namespace

TEST_F(LogFiles, OfAFolderComeInTheOrderOfTheirFirstLines)
{
    Write(L"KZEB.log", L"01/12/24 09:00:00:000");
    Write(L"KZEB 2024-1-12 09-00-00.log", L"01/09/24 10:00:00:000");
    Write(L"KZEB 2024-1-9 10-00-00.log", L"01/05/24 09:30:12:045");
    EXPECT_EQ(NamesAt({m_folder.Path()}),
              (std::vector<std::wstring>{L"KZEB 2024-1-9 10-00-00.log", L"KZEB 2024-1-12 09-00-00.log", L"KZEB.log"}));
}

TEST_F(LogFiles, ThatBeginAtTheSameTimeComeByNameWithTheLiveOneLast)
{
    for (auto const* const name : {L"KZEB.log", L"KZEB 2024-1-5 09-30-13.log", L"KZEB 2024-1-5 09-30-12.log"})
    {
        Write(name, L"01/05/24 09:30:12:045");
    }
    EXPECT_EQ(NamesAt({m_folder.Path()}),
              (std::vector<std::wstring>{L"KZEB 2024-1-5 09-30-12.log", L"KZEB 2024-1-5 09-30-13.log", L"KZEB.log"}));
}

TEST_F(LogFiles, WithoutALineOfTheAppComeFirst)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    test::WriteBytes(m_folder / L"a.log", "another product's\n");
    test::WriteBytes(m_folder / L"z.log", "");
    EXPECT_EQ(NamesAt({m_folder.Path()}), (std::vector<std::wstring>{L"a.log", L"z.log", L"KZEB.log"}));
}

TEST_F(LogFiles, OfFoldersBelowAreFoundAndOtherFilesAreNot)
{
    Write(L"Tessaline\\HOV\\KZEB.log", L"01/05/24 09:30:12:045");
    test::WriteBytes(m_folder / L"pvq.trace", "");
    EXPECT_EQ(NamesAt({m_folder.Path()}), std::vector<std::wstring>{L"Tessaline\\HOV\\KZEB.log"});
}

TEST_F(LogFiles, AreReadOnceHoweverOftenTheyAreNamed)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    EXPECT_EQ(NamesAt({m_folder.Path(), m_folder / L"KZEB.log"}), std::vector<std::wstring>{L"KZEB.log"});
}

TEST_F(LogFiles, AreReadByTheirNamesWhateverTheseAre)
{
    Write(L"support case.txt", L"01/05/24 09:30:12:045");
    EXPECT_EQ(NamesAt({m_folder / L"support case.txt"}), std::vector<std::wstring>{L"support case.txt"});
}

TEST_F(LogFiles, ThatAreNotThereAreSaid)
{
    EXPECT_TRUE(FailureAt(m_folder / L"nowhere").starts_with("there is no log at "))
        << FailureAt(m_folder / L"nowhere");
    EXPECT_TRUE(FailureAt(m_folder.Path()).ends_with(": no file whose name ends in .log"))
        << FailureAt(m_folder.Path());
}

TEST_F(LogFiles, HaveNamesInUpperOrLowerCase)
{
    Write(L"KZEB.LOG", L"01/05/24 09:30:12:045");
    Write(L"copy.Log", L"01/04/24 09:30:12:045");
    EXPECT_EQ(NamesAt({m_folder.Path()}), (std::vector<std::wstring>{L"copy.Log", L"KZEB.LOG"}));
}

TEST_F(LogFiles, AreReadOnceHoweverTheirNamesAreSpelled)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    EXPECT_EQ(NamesAt({m_folder / L"KZEB.log", m_folder / L"kzeb.LOG", m_folder / L".\\KZEB.log"}),
              std::vector<std::wstring>{L"KZEB.log"});
}

TEST_F(LogFiles, ComeWithTheLiveOneLastAlsoWhereTheClockWasSetBack)
{
    Write(L"KZEB 2024-1-5 09-00-00.log", L"01/05/24 08:00:00:000");
    Write(L"KZEB.log", L"01/05/24 07:59:00:000");
    Write(L"other\\KZEB.log", L"01/05/24 07:58:00:000");
    EXPECT_EQ(NamesAt({m_folder.Path()}),
              (std::vector<std::wstring>{L"other\\KZEB.log", L"KZEB 2024-1-5 09-00-00.log", L"KZEB.log"}));
}

TEST_F(LogFiles, ThatCannotBeOpenedAreSaidAndTheOthersCome)
{
    Write(L"KZEB 2024-1-5 09-00-00.log", L"01/05/24 08:00:00:000"); // as the app has a copy while it makes it
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    auto const locked = Lock(L"KZEB 2024-1-5 09-00-00.log");
    EXPECT_EQ(NamesAt({m_folder.Path()}), std::vector<std::wstring>{L"KZEB.log"});
    ExpectUnread(L"KZEB 2024-1-5 09-00-00.log", "(32)");
}

TEST_F(LogFiles, OfAFolderBelowThatCannotBeOpenedAreLeftOutAndItIsSaid)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    Write(L"secret\\KZEB.log", L"01/05/24 09:30:12:045");
    test::FindFirstFileCall const denied([](auto next, LPCWSTR pattern, auto* found) {
        if (std::wstring_view(pattern).ends_with(L"\\secret\\*"))
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        }
        return next(pattern, found);
    });
    EXPECT_EQ(NamesAt({m_folder.Path()}), std::vector<std::wstring>{L"KZEB.log"});
    ExpectUnread(L"secret", "(5)");
}

TEST_F(LogFiles, ComeUpToWhereTheListOfAFolderBreaksOff)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    test::FindNextFileCall const breaks([](auto next, HANDLE search, WIN32_FIND_DATAW* found) {
        if (next(search, found))
        {
            return TRUE;
        }
        SetLastError(ERROR_NETNAME_DELETED);
        return FALSE;
    });
    EXPECT_EQ(NamesAt({m_folder.Path()}), std::vector<std::wstring>{L"KZEB.log"});
    ASSERT_EQ(m_unread.size(), 1u);
    EXPECT_TRUE(m_unread[0].ends_with("(64)")) << m_unread[0];
}

TEST_F(LogFiles, NoneOfWhichCanBeReadAreAFailure)
{
    Write(L"KZEB.log", L"01/05/24 09:30:12:045");
    auto const locked = Lock(L"KZEB.log");
    EXPECT_TRUE(FailureAt(m_folder / L"KZEB.log").ends_with("(32)")) << FailureAt(m_folder / L"KZEB.log");
    EXPECT_TRUE(FailureAt(m_folder.Path()).ends_with("(32)")) << FailureAt(m_folder.Path());
    test::GetFileAttributesCall const denied(test::Failing(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED));
    EXPECT_TRUE(FailureAt(m_folder.Path()).ends_with("(5)")) << FailureAt(m_folder.Path());
}
