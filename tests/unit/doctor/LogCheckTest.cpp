#include "doctor/live/LogCheck.h"

#include "doctor/base/SystemText.h"
#include "tests/support/Files.h"
#include "tests/support/MakeLink.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LiveSystem.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>

using doctor::Result;

namespace
{

class LogCheck : public testing::Test
{
  protected:
    LogCheck() { CreateDirectoryW(m_logFolder.c_str(), nullptr); }

    doctor::Finding Look(bool appRuns = true) const
    {
        auto finding = doctor::LogFinding(m_log, appRuns);
        EXPECT_EQ(finding.stage, doctor::Stage::StartUp);
        return finding;
    }

    // Fails the opening of one path.
    static auto FailsFor(std::wstring const& failing, DWORD error)
    {
        return [=](auto next, LPCWSTR path, auto... arguments) {
            if (path != failing)
            {
                return next(path, arguments...);
            }
            SetLastError(error);
            return INVALID_HANDLE_VALUE;
        };
    }

    test::TemporaryFolder m_folder;
    std::wstring m_logFolder = m_folder / L"HOV";
    std::wstring m_log = m_logFolder + L"\\KZEB.log";
};

} // namespace

TEST_F(LogCheck, FindsALogThatCanBeWrittenAndLeavesItAsItIs)
{
    test::WriteBytes(m_log, "lines");
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Worked);
    EXPECT_EQ(finding.what, "The log is there and can be written: " + doctor::PathText(m_log) + ".");
    EXPECT_EQ(test::ReadBytes(m_log), "lines");
    EXPECT_EQ(test::NamesIn(m_logFolder), std::vector<std::wstring>{L"KZEB.log"});
    EXPECT_TRUE(DeleteFileW(m_log.c_str())); // nothing is held
}

TEST_F(LogCheck, SharesTheLogWithAllThatUseIt)
{
    test::WriteBytes(m_log, "lines");
    std::vector<std::pair<DWORD, DWORD>> opened; // disposition, sharing
    test::CreateFileCall const recorded(
        [&](auto next, LPCWSTR path, DWORD access, DWORD sharing, auto security, DWORD disposition, auto... rest) {
            opened.emplace_back(disposition, sharing);
            return next(path, access, sharing, security, disposition, rest...);
        });
    Look();
    DWORD const all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    EXPECT_EQ(opened, std::vector(3, std::pair<DWORD, DWORD>(OPEN_EXISTING, all)));
}

TEST_F(LogCheck, SaysThatTheAppBeganNoLog)
{
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "There is no log: " + doctor::PathText(m_log) + ".");
    EXPECT_EQ(test::NamesIn(m_logFolder), std::vector<std::wstring>{});
}

TEST_F(LogCheck, BlamesNobodyForALogBeforeTheAppRuns)
{
    auto const finding = Look(false);
    EXPECT_EQ(finding.result, Result::NotSeen);
    EXPECT_EQ(finding.cause, "The app has not run for this user since it was installed.");
}

TEST_F(LogCheck, SaysThatTheFolderIsMissing)
{
    RemoveDirectoryW(m_logFolder.c_str());
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "There is no folder for the log: " + doctor::PathText(m_logFolder) + ".");
    EXPECT_EQ(Look(false).result, Result::NotSeen);
    EXPECT_FALSE(test::FileExists(m_logFolder));
}

TEST_F(LogCheck, SaysThatTheLogCannotBeWritten)
{
    test::WriteBytes(m_log, "lines");
    test::CreateFileCall const denied(FailsFor(m_log, ERROR_ACCESS_DENIED));
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_TRUE(finding.what.starts_with("The log cannot be written: " + doctor::PathText(m_log) + ": "))
        << finding.what;
    EXPECT_EQ(finding.cause, "The file is read-only, or its access rights were changed.");
}

TEST_F(LogCheck, SaysThatTheLogCannotBeRead)
{
    test::WriteBytes(m_log, "lines");
    DWORD error = ERROR_ACCESS_DENIED;
    test::CreateFileCall const denied([&](auto next, LPCWSTR path, DWORD access, auto... rest) {
        if (path != m_log || access != GENERIC_READ)
        {
            return next(path, access, rest...);
        }
        SetLastError(error);
        return INVALID_HANDLE_VALUE;
    });
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "The log can be written, but not read: " + doctor::FailureText(m_log, error) + ".");
    EXPECT_TRUE(finding.cause.starts_with("Its access rights were changed: the app cannot copy the log"));
    error = ERROR_SHARING_VIOLATION;
    EXPECT_TRUE(Look().cause.starts_with("Another program has it open"));
}

TEST_F(LogCheck, SaysThatAnotherProgramHoldsTheLog)
{
    test::WriteBytes(m_log, "lines");
    zant::UniqueHandle const editor(CreateFileW(m_log.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(editor);
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_TRUE(finding.what.ends_with(" (32).")) << finding.what;
    EXPECT_TRUE(finding.cause.starts_with("Another program has it open")) << finding.cause;
}

TEST_F(LogCheck, SaysThatNothingCanBeMadeInTheFolder)
{
    test::WriteBytes(m_log, "lines");
    test::CreateFileCall const denied(FailsFor(m_logFolder, ERROR_ACCESS_DENIED));
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_TRUE(
        finding.what.starts_with("No file can be made in the log's folder: " + doctor::PathText(m_logFolder) + ": "))
        << finding.what;
}

TEST_F(LogCheck, NamesTheLinkInThePath)
{
    test::WriteBytes(m_log, "lines");
    auto const link = m_folder / L"link";
    test::MakeLink(link, m_logFolder);
    auto const finding = doctor::LogFinding(link + L"\\KZEB.log", true);
    EXPECT_EQ(finding.stage, doctor::Stage::StartUp);
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "A link is in the log's path: " + doctor::PathText(link) + ".");
}

TEST_F(LogCheck, NamesTheLogThatIsALinkItself)
{
    test::WriteBytes(m_log, "lines");
    test::GetFileAttributesCall const link(
        [&](auto next, LPCWSTR path) { return path == m_log ? FILE_ATTRIBUTE_REPARSE_POINT : next(path); });
    EXPECT_EQ(Look().what, "A link is in the log's path: " + doctor::PathText(m_log) + ".");
}

TEST_F(LogCheck, SaysThatTheLogHasAnotherHardLink)
{
    test::WriteBytes(m_log, "lines");
    ASSERT_TRUE(CreateHardLinkW((m_folder / L"other").c_str(), m_log.c_str(), nullptr));
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "The log has another hard link: " + doctor::PathText(m_log) + ".");
}

TEST_F(LogCheck, CannotTellTheHardLinks)
{
    test::WriteBytes(m_log, "lines");
    test::GetFileInformationCall const failing(test::Failing(FALSE, ERROR_NOT_SUPPORTED));
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_TRUE(finding.what.starts_with("How many names the log has cannot be told: ")) << finding.what;
}

TEST_F(LogCheck, IsWhereWindowsHasItForThisUser)
{
    SetEnvironmentVariableW(L"LOCALAPPDATA", L"C:\\local");
    EXPECT_EQ(doctor::LogPathOf(L"family").native(),
              L"C:\\local\\Packages\\family\\AC\\Temp\\Tessaline\\HOV\\KZEB.log");
    SetEnvironmentVariableW(L"LOCALAPPDATA", nullptr);
    EXPECT_EQ(doctor::LogPathOf(L"family").native(), L"");
    auto const finding = doctor::LogFinding(doctor::LogPathOf(L"family"), true);
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_TRUE(finding.what.starts_with("Where the log is cannot be told: ")) << finding.what;
}
