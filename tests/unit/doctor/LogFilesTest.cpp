#include "doctor/log/LogFiles.h"

#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"

#include <filesystem>
#include <gtest/gtest.h>

using doctor::LogFilesAt;

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

    std::vector<std::wstring> NamesAt(std::vector<std::filesystem::path> const& paths)
    {
        std::vector<std::wstring> names;
        for (auto const& path : LogFilesAt(paths))
        {
            names.push_back(path.lexically_relative(m_folder.Path()).native());
        }
        return names;
    }

    std::string FailureAt(std::wstring const& path)
    try
    {
        LogFilesAt({path});
        return "";
    }
    catch (doctor::Error const& error)
    {
        return error.what();
    }

    test::TemporaryFolder m_folder;
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
