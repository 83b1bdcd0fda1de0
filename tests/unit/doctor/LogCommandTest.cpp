#include "doctor/CommandLine.h"

#include "doctor/base/Error.h"
#include "tests/native/StoryLog.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/doctor/LogText.h"
#include "utils/UniqueHandle.h"
#include "utils/Utf8.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <windows.h>

WRAP(ReadFileCall, ReadFile);

using doctor::ExitCode;
using test::LogText;
using enum doctor::Line;

namespace
{

class LogCommand : public testing::Test
{
  protected:
    ExitCode Run(std::vector<std::string> words)
    {
        m_text.clear();
        m_errors.clear();
        words.insert(words.begin(), "log");
        return doctor::RunCommandLine(std::move(words),
                                      {.write = [&](std::string_view line) { m_text += line; },
                                       .writeError = [&](std::string_view line) { m_errors.emplace_back(line); },
                                       .pause = [] { throw doctor::Error("paused"); },
                                       .now = [&] { return m_now; },
                                       .takesColours = m_takesColours,
                                       .ownLog = m_ownLog});
    }

    // Lines at 09:00 on 2024-01-05.
    void Write(std::initializer_list<doctor::Line> lines)
    {
        auto text = test::mark;
        for (auto const line : lines)
        {
            text += LogText(L"01/05/24 09:00:00:000", zant::ToWide(std::string(MessageOf(line))).value()) + L"\r\n";
        }
        test::WriteBytes(m_path, test::Utf16(text));
    }

    void WriteRefusedLaunch() { Write({Started, BackgroundActivated, TaskDeferral, PushTask, LaunchForPush}); }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"KZ\u00C9B.log";
    std::string const m_word = zant::ToUtf8(m_path).value();
    doctor::LogTime m_now = test::At(3600);
    std::function<bool()> m_takesColours;
    std::function<std::filesystem::path()> m_ownLog;
    std::string m_text;
    std::vector<std::string> m_errors;
};

} // namespace

TEST_F(LogCommand, SaysThatNothingFailed)
{
    Write({Started, ProtocolActivated});
    EXPECT_EQ(Run({m_word}), ExitCode::Done);
    EXPECT_TRUE(m_text.starts_with("Nothing failed.\n")) << m_text;
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(LogCommand, SaysWhatFailed)
{
    WriteRefusedLaunch();
    EXPECT_EQ(Run({m_word}), ExitCode::StageFailed);
    EXPECT_TRUE(m_text.starts_with("The first stage that failed: desktop component,")) << m_text;
    EXPECT_EQ(m_text.find('\x1b'), m_text.npos);
}

TEST_F(LogCommand, WaitsUntilTheTimeWhenTheLogWasTaken)
{
    WriteRefusedLaunch();
    EXPECT_EQ(Run({m_word, "--as-of", "2024-01-05 09:00:30"}), ExitCode::CannotBeTold);
    EXPECT_TRUE(m_text.starts_with("Nothing failed up to the log's end, where something is under way.")) << m_text;
    EXPECT_EQ(Run({m_word, "--as-of", "2024-01-05 09:00:31"}), ExitCode::StageFailed);
    m_now = test::At(30);
    EXPECT_EQ(Run({m_word}), ExitCode::CannotBeTold);
    EXPECT_EQ(Run({m_word, "--finished"}), ExitCode::StageFailed);
}

TEST_F(LogCommand, WritesJsonAndColours)
{
    WriteRefusedLaunch();
    EXPECT_EQ(Run({m_word, "--json"}), ExitCode::StageFailed);
    EXPECT_TRUE(m_text.starts_with(R"({"summary":"The first stage)")) << m_text;
    EXPECT_EQ(Run({m_word, "--colour"}), ExitCode::StageFailed);
    EXPECT_NE(m_text.find("\x1b[31mfailed"), m_text.npos);
}

TEST_F(LogCommand, IsColouredUnaskedWhereColoursAreShown)
{
    WriteRefusedLaunch();
    m_takesColours = [] { return true; };
    EXPECT_EQ(Run({m_word}), ExitCode::StageFailed);
    EXPECT_NE(m_text.find("\x1b[31mfailed"), m_text.npos);
    EXPECT_EQ(Run({m_word, "--json"}), ExitCode::StageFailed);
    EXPECT_EQ(m_text.find('\x1b'), m_text.npos);
    m_takesColours = [] { return false; };
    EXPECT_EQ(Run({m_word}), ExitCode::StageFailed);
    EXPECT_EQ(m_text.find('\x1b'), m_text.npos);
}

TEST_F(LogCommand, DrawsATimelineAndWritesTraceEvents)
{
    auto const page = m_folder / L"p\u00E4ge.html";
    auto const trace = m_folder / L"trace.json";
    test::WriteBytes(page, std::string(1'000'000, 'x')); // is replaced
    WriteRefusedLaunch();
    EXPECT_EQ(Run({m_word, "--html", zant::ToUtf8(page).value(), "--trace", zant::ToUtf8(trace).value()}),
              ExitCode::StageFailed);
    EXPECT_TRUE(m_text.starts_with("The first stage that failed: desktop component,")) << m_text;
    auto const html = test::ReadBytes(page);
    EXPECT_TRUE(html.starts_with("<!DOCTYPE html>")) << html.substr(0, 40);
    EXPECT_TRUE(html.ends_with("</html>\n")) << html.substr(html.size() - 40);
    EXPECT_NE(html.find("launch for a push"), std::string::npos);
    EXPECT_NE(test::ReadBytes(trace).find("launch for a push"), std::string::npos);
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(LogCommand, OverwritesNoLog)
{
    WriteRefusedLaunch();
    auto const before = test::ReadBytes(m_path);
    for (auto const* const option : {"--html", "--trace"})
    {
        EXPECT_EQ(Run({m_word, option, m_word}), ExitCode::UsageError);
        ASSERT_EQ(m_errors.size(), 1u);
        EXPECT_NE(m_errors[0].find("is named as a log, which would be overwritten"), std::string::npos) << m_errors[0];
    }
    EXPECT_EQ(test::ReadBytes(m_path), before);
}

TEST_F(LogCommand, OverwritesNoLogWhateverItsName)
{
    WriteRefusedLaunch();
    auto const bytes = test::ReadBytes(m_path);
    test::WriteBytes(m_folder / L"case.txt", bytes);
    test::WriteBytes(m_folder / L"KZEB.LOG", bytes);
    for (auto const* const option : {"--html", "--trace"})
    {
        auto const word = zant::ToUtf8(m_folder / L"case.txt").value();
        EXPECT_EQ(Run({word, option, zant::ToUtf8(m_folder / L".\\CASE.txt").value()}), ExitCode::Failed);
        ASSERT_EQ(m_errors.size(), 1u);
        EXPECT_TRUE(m_errors[0].ends_with("' is one of the logs, which would be overwritten")) << m_errors[0];
        EXPECT_EQ(Run({word, option, zant::ToUtf8(m_folder / L"KZEB.LOG").value()}), ExitCode::UsageError);
    }
    EXPECT_EQ(test::ReadBytes(m_folder / L"case.txt"), bytes);
    EXPECT_EQ(test::ReadBytes(m_folder / L"KZEB.LOG"), bytes);
}

TEST_F(LogCommand, SaysThatATimelineCannotBeWritten)
{
    Write({Started, ProtocolActivated});
    EXPECT_EQ(Run({m_word, "--html", zant::ToUtf8(m_folder / L"missing\\page.html").value()}), ExitCode::Failed);
    EXPECT_EQ(m_text, "");
    ASSERT_EQ(m_errors.size(), 1u);
    EXPECT_NE(m_errors[0].find("page.html: "), std::string::npos) << m_errors[0];
}

TEST_F(LogCommand, SaysOfAFileThatItIsNoLog)
{
    for (auto const* const bytes : {"", "not a log\n", "\xFF\xFE", "\xFF\xFEx", "\x01\x02\x03"})
    {
        test::WriteBytes(m_path, bytes);
        EXPECT_EQ(Run({m_word}), ExitCode::CannotBeTold);
        EXPECT_TRUE(m_text.starts_with("There is no line of the app.\n")) << m_text;
        auto const isEmpty = std::string_view(bytes).empty() || bytes == std::string_view("\xFF\xFE");
        EXPECT_TRUE(m_text.ends_with(isEmpty ? "; the file is empty" : "; this is no log of the app")) << m_text;
    }
}

TEST_F(LogCommand, ReadsTheLogsOfAFolder)
{
    Write({Started, ProtocolActivated});
    EXPECT_EQ(Run({zant::ToUtf8(m_folder.Path()).value()}), ExitCode::Done);
}

TEST_F(LogCommand, ReadsGluedAndDamagedLines)
{
    auto const line = [](doctor::Line each) {
        return LogText(L"01/05/24 09:00:00:000", zant::ToWide(std::string(MessageOf(each))).value());
    };
    test::WriteBytes(m_path, test::Utf16(test::mark + line(Started) + L"\r\nhalf a l" + line(BackgroundActivated) +
                                         line(TaskDeferral) + L"\r\n") +
                                 "x" + test::Utf16(line(PushTask) + L"\r\n" + line(PushTask) + L"\r\n"));
    EXPECT_EQ(Run({m_word, "--json"}), ExitCode::StageFailed);
    EXPECT_NE(m_text.find(R"("lines":4,"others":2,"damaged":1,)"), m_text.npos) << m_text;
}

TEST_F(LogCommand, ReadsItsOwnLogWhereNoPathIsGiven)
{
    EXPECT_EQ(Run({}), ExitCode::UsageError);
    Write({Started, ProtocolActivated});
    m_ownLog = [&] { return m_path; };
    EXPECT_EQ(Run({}), ExitCode::Done);
}

TEST_F(LogCommand, RefusesWhatItDoesNotKnow)
{
    Write({Started, ProtocolActivated});
    EXPECT_EQ(Run({m_word, "--as-of", "yesterday"}), ExitCode::UsageError);
    EXPECT_EQ(Run({m_word, "--as-of", "2024-01-05", "--finished"}), ExitCode::UsageError);
    EXPECT_EQ(Run({m_word, "--no-such-option"}), ExitCode::UsageError);
    EXPECT_EQ(m_text, "");
}

TEST_F(LogCommand, SaysThatThereIsNoLog)
{
    EXPECT_EQ(Run({"nowhere"}), ExitCode::Failed);
    EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: there is no log at nowhere"});
    EXPECT_EQ(Run({zant::ToUtf8(m_folder.Path()).value()}), ExitCode::Failed); // an empty folder
    EXPECT_EQ(m_text, "");
}

TEST_F(LogCommand, RemarksOnALogThatCannotBeReadAndReadsTheOthers)
{
    Write({Started, ProtocolActivated});
    auto const locked = m_folder / L"locked.log";
    test::WriteBytes(locked, "x");
    zant::UniqueHandle const lock(CreateFileW(locked.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    for (auto const& options :
         std::vector<std::vector<std::string>>{{}, {"--html", zant::ToUtf8(m_folder / L"page.html").value()}})
    {
        std::vector<std::string> words = {zant::ToUtf8(m_folder.Path()).value()};
        words.insert(words.end(), options.begin(), options.end());
        EXPECT_EQ(Run(words), ExitCode::Done);
        EXPECT_TRUE(m_text.starts_with("Nothing failed.\n")) << m_text;
        EXPECT_NE(m_text.find("\n  Not read: " + zant::ToUtf8(locked).value() + ": "), m_text.npos) << m_text;
        EXPECT_NE(m_text.find(" (32).\n"), m_text.npos) << m_text;
    }
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(LogCommand, TellsWhatALogHoldsUpToWhereItCannotBeRead)
{
    WriteRefusedLaunch();
    auto calls = 0;
    test::ReadFileCall const breaks([&](auto next, auto... arguments) { // the first call finds the log's time
        if (++calls == 3)
        {
            SetLastError(ERROR_CRC);
            return FALSE;
        }
        return next(arguments...);
    });
    EXPECT_EQ(Run({m_word}), ExitCode::StageFailed);
    EXPECT_EQ(calls, 3);
    EXPECT_TRUE(m_text.starts_with("The first stage that failed: desktop component,")) << m_text;
    EXPECT_NE(m_text.find(" (23).\n"), m_text.npos) << m_text;
}

TEST_F(LogCommand, WritesNothingAndLocksNothing)
{
    WriteRefusedLaunch();
    auto const bytes = test::ReadBytes(m_path);
    auto const written = std::filesystem::last_write_time(m_path);
    // As the app has it open.
    auto* const file =
        CreateFileW(m_path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(Run({m_word}), ExitCode::StageFailed);
    CloseHandle(file);
    EXPECT_EQ(test::ReadBytes(m_path), bytes);
    EXPECT_EQ(std::filesystem::last_write_time(m_path), written);
    EXPECT_EQ(test::NamesIn(m_folder.Path()), std::vector<std::wstring>{L"KZ\u00C9B.log"});
    EXPECT_TRUE(DeleteFileW(m_path.c_str()));
}
