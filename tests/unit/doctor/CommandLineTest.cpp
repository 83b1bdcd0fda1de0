#include "doctor/CommandLine.h"

#include "doctor/base/Error.h"
#include "doctor/live/MakeFinding.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LogText.h"
#include "utils/UniqueHandle.h"
#include "utils/Utf8.h"

#include <functional>
#include <gtest/gtest.h>
#include <windows.h>

using doctor::ExitCode;
using test::LogText;

namespace
{

class CommandLine : public testing::Test
{
  protected:
    ExitCode Run(std::vector<std::string> words)
    {
        m_lines.clear();
        m_errors.clear();
        return doctor::RunCommandLine(std::move(words),
                                      {.write = [&](std::string_view line) { m_lines.emplace_back(line); },
                                       .writeError = [&](std::string_view line) { m_errors.emplace_back(line); },
                                       .pause = m_pause,
                                       .now = [&] { return m_now; },
                                       .takesColours = m_takesColours,
                                       .look =
                                           [&](doctor::LiveOptions const& options) {
                                               m_liveOptions = options;
                                               return m_findings;
                                           },
                                       .ownLog = m_ownLog});
    }

    // What `show` writes of a log with an INFO line of thread 7, a WARN line of thread 8 and text that is no line.
    std::string Shown(std::vector<std::string> options)
    {
        test::WriteBytes(m_path, test::Utf16(test::mark + LogText(L"01/05/24 09:30:12:045", L"Inside one") + L"\r\n" +
                                             LogText(L"01/05/24 09:30:13:000", L"two", L"WARN", L"AppService", 8) +
                                             L"\r\nother text\r\n"));
        options.insert(options.begin(), {"show", zant::ToUtf8(m_path).value()});
        m_exitCode = Run(std::move(options));
        return ShownMessages();
    }

    // The last words of the lines.
    std::string ShownMessages() const
    {
        std::string messages;
        for (auto const& line : m_lines)
        {
            messages += line.substr(line.find_last_of(' ') + 1) + ";";
        }
        return messages;
    }

    test::TemporaryFolder m_folder;
    std::wstring const m_path = m_folder / L"KZ\u00C9B.log";
    std::vector<std::string> m_lines;
    std::vector<std::string> m_errors;
    std::function<void()> m_pause = [] { throw doctor::Error("paused"); };
    doctor::LogTime m_now{};
    std::function<bool()> m_takesColours;
    std::function<std::filesystem::path()> m_ownLog;
    ExitCode m_exitCode{};
    doctor::LiveOptions m_liveOptions; // with which it looked at the machine
    std::vector<doctor::Finding> m_findings;
};

} // namespace

TEST_F(CommandLine, ShowsALogAndHasItsOptions)
{
    EXPECT_EQ(Shown({}), "one;two;text;");
    EXPECT_EQ(m_exitCode, ExitCode::Done);
    EXPECT_EQ(m_errors, std::vector<std::string>{});
    EXPECT_EQ(Shown({"--level", "warn"}), "two;");
    EXPECT_EQ(Shown({"--thread", "7"}), "one;");
    EXPECT_EQ(Shown({"--category", "appservice"}), "two;");
    EXPECT_EQ(Shown({"--grep", "inside"}), "one;");
    EXPECT_EQ(Shown({"--since", "2024-01-05 09:30:13"}), "two;");
    EXPECT_EQ(Shown({"--colour", "--level", "warn"}), "two\x1b[0m;");
    Shown({"--json"});
    EXPECT_TRUE(m_lines.at(0).starts_with(R"({"time":")"));
}

TEST_F(CommandLine, ShowsColoursUnaskedWhereTheyAreShown)
{
    m_takesColours = [] { return true; };
    EXPECT_EQ(Shown({"--level", "warn"}), "two\x1b[0m;");
    Shown({"--json"});
    EXPECT_EQ(m_lines.at(0).find('\x1b'), std::string::npos);
    m_takesColours = [] { return false; };
    EXPECT_EQ(Shown({"--level", "warn"}), "two;");
    EXPECT_EQ(Shown({"--colour", "--level", "warn"}), "two\x1b[0m;");
}

TEST_F(CommandLine, SaysWhichLogItCannotShowAndShowsTheOthers)
{
    Shown({});
    auto const locked = m_folder / L"locked.log";
    test::WriteBytes(locked, "x");
    zant::UniqueHandle const lock(CreateFileW(locked.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(Run({"show", zant::ToUtf8(m_folder.Path()).value()}), ExitCode::Failed);
    EXPECT_EQ(ShownMessages(), "one;two;text;");
    ASSERT_EQ(m_errors.size(), 1u);
    EXPECT_TRUE(m_errors[0].starts_with("doctor: not read: " + zant::ToUtf8(locked).value() + ": ")) << m_errors[0];
    EXPECT_TRUE(m_errors[0].ends_with("(32)")) << m_errors[0];
}

TEST_F(CommandLine, FollowsTheLastFile)
{
    std::vector<std::string> shown;
    m_pause = [&] {
        shown.push_back(ShownMessages());
        if (shown.size() == 2)
        {
            throw doctor::Error("the test ends it");
        }
        auto bytes = test::ReadBytes(m_path);
        test::WriteBytes(m_path, bytes + test::Utf16(LogText(L"01/05/24 09:30:14:000", L"three") + L"\r\n"));
    };
    Shown({"--follow"});
    EXPECT_EQ(shown, (std::vector<std::string>{"one;two;text;", "one;two;text;three;"}));
    EXPECT_EQ(m_exitCode, ExitCode::Failed);
    EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: the test ends it"});
}

TEST_F(CommandLine, ShowsItsOwnLogWhereNoPathIsGiven)
{
    Shown({});
    m_ownLog = [&] { return m_path; };
    EXPECT_EQ(Run({"show", "--level", "warn"}), ExitCode::Done);
    EXPECT_EQ(ShownMessages(), "two;");
    test::WriteBytes(m_folder / L"other.log", "other\n");
    EXPECT_EQ(Run({"show", "--json", zant::ToUtf8(m_folder / L"other.log").value()}), ExitCode::Done);
    ASSERT_EQ(m_lines.size(), 1u);
    EXPECT_NE(m_lines[0].find("other.log"), std::string::npos) << m_lines[0];
}

TEST_F(CommandLine, ShowsItsOwnLogWithTheCopiesBesideIt)
{
    auto const write = [&](std::wstring const& name, std::wstring const& time, std::wstring const& message) {
        test::WriteBytes(m_folder / name, test::Utf16(test::mark + LogText(time, message) + L"\r\n"));
    };
    write(L"KZ\u00C9B 2024-1-5 09-30-13.log", L"01/05/24 09:30:12:045", L"copied");
    write(L"KZ\u00C9B.log", L"01/05/24 09:30:14:000", L"live");
    m_ownLog = [&] { return m_path; };
    EXPECT_EQ(Run({"show"}), ExitCode::Done);
    EXPECT_EQ(ShownMessages(), "copied;live;");
    write(L"z.log", L"01/06/24 09:30:12:045", L"newer");
    auto pauses = 0;
    m_pause = [&] {
        if (++pauses == 2)
        {
            throw doctor::Error("the test ends it");
        }
        test::WriteBytes(m_path,
                         test::ReadBytes(m_path) + test::Utf16(LogText(L"01/05/24 09:30:15:000", L"added") + L"\r\n"));
    };
    EXPECT_EQ(Run({"show", "--follow"}), ExitCode::Failed);
    EXPECT_EQ(ShownMessages(), "copied;newer;live;added;");
}

TEST_F(CommandLine, FollowsItsOwnLogFromBeforeItIsThere)
{
    m_ownLog = [&] { return m_path; };
    EXPECT_EQ(Run({"show"}), ExitCode::Failed);
    m_pause = [&] {
        if (!m_lines.empty())
        {
            throw doctor::Error("the test ends it");
        }
        test::WriteBytes(m_path, test::Utf16(test::mark + LogText(L"01/05/24 09:30:12:045", L"one") + L"\r\n"));
    };
    EXPECT_EQ(Run({"show", "--follow"}), ExitCode::Failed);
    EXPECT_EQ(ShownMessages(), "one;");
    EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: the test ends it"});
}

TEST_F(CommandLine, TakesAnotherLogForItsOwn)
{
    auto const other = m_folder / L"device\\KZEB.log";
    ASSERT_TRUE(CreateDirectoryW((m_folder / L"device").c_str(), nullptr));
    test::WriteBytes(other, test::Utf16(test::mark + LogText(L"01/05/24 09:30:12:045", L"other") + L"\r\n"));
    Shown({});
    m_ownLog = [&] { return m_path; };
    auto const word = zant::ToUtf8(other).value();
    EXPECT_EQ(Run({"show", "--log", word}), ExitCode::Done);
    EXPECT_EQ(ShownMessages(), "other;");
    EXPECT_EQ(Run({"show", "--log", word, zant::ToUtf8(m_path).value()}), ExitCode::Done);
    EXPECT_EQ(ShownMessages(), "one;two;text;");
    Run({"log", "--log", word});
    EXPECT_NE(m_lines.at(0).find("device\\KZEB.log: 1 lines"), std::string::npos) << m_lines[0];
}

TEST_F(CommandLine, SaysThatItDoesNotKnowWhereItsOwnLogIs)
{
    m_ownLog = [] { return std::filesystem::path(); };
    for (auto const& words : std::vector<std::vector<std::string>>{{"show"}, {"show", "--follow"}, {"log"}})
    {
        EXPECT_EQ(Run(words), ExitCode::Failed);
        EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: where the app's log is cannot be told: name its path"});
    }
}

TEST_F(CommandLine, FollowsNoOtherLogThatIsMissing)
{
    EXPECT_EQ(Run({"show", "nowhere", "--follow"}), ExitCode::Failed);
    EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: there is no log at nowhere"});
}

TEST_F(CommandLine, LooksAtTheMachine)
{
    m_findings = {doctor::Worked(doctor::Stage::Package, "Installed."),
                  doctor::CannotBeTold(doctor::Stage::StartUp, "Unknown.", "")};
    EXPECT_EQ(Run({"live"}), ExitCode::Done);
    EXPECT_EQ(m_lines, (std::vector<std::string>{"worked          package            Installed.",
                                                 "cannot be told  start-up           Unknown."}));
    EXPECT_FALSE(m_liveOptions.log.has_value());
    EXPECT_FALSE(m_liveOptions.hasFullUris);
    EXPECT_EQ(m_liveOptions.limit, std::chrono::seconds(60));
    EXPECT_EQ(Run({"live", "--json", "--full", "--timeout", "5", "--log", zant::ToUtf8(m_path).value()}),
              ExitCode::Done);
    EXPECT_TRUE(m_lines.at(0).starts_with(R"({"stage":"package")")) << m_lines[0];
    EXPECT_EQ(m_liveOptions.log.value().native(), m_path);
    EXPECT_TRUE(m_liveOptions.hasFullUris);
    EXPECT_EQ(m_liveOptions.limit, std::chrono::seconds(5));
}

TEST_F(CommandLine, TellsBelowTheMachineWhatItsLogTells)
{
    Shown({});
    m_findings = {doctor::Worked(doctor::Stage::Package, "Installed.")};
    m_ownLog = [&] { return m_path; };
    EXPECT_EQ(Run({"live"}), ExitCode::Done);
    ASSERT_EQ(m_lines.size(), 2u);
    EXPECT_TRUE(m_lines[1].starts_with("\nBy the log: ")) << m_lines[1];
    EXPECT_NE(m_lines[1].find("B.log: 2 lines"), std::string::npos) << m_lines[1];
    EXPECT_EQ(Run({"live", "--json"}), ExitCode::Done);
    EXPECT_TRUE(m_lines.at(1).starts_with(R"({"summary":)")) << m_lines[1];
    m_ownLog = [&] { return m_folder / L"none.log"; };
    EXPECT_EQ(Run({"live"}), ExitCode::Done);
    EXPECT_EQ(m_lines.size(), 1u);
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(CommandLine, EndsWithAnErrorWhenSomethingOnTheMachineFails)
{
    m_findings = {doctor::Failed(doctor::Stage::Channel, "None.", "", "")};
    EXPECT_EQ(Run({"live"}), ExitCode::StageFailed);
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(CommandLine, HasHelp)
{
    EXPECT_EQ(Run({"--help"}), ExitCode::Done);
    EXPECT_NE(m_lines.at(0).find("show "), std::string::npos) << m_lines.at(0);
    EXPECT_EQ(Run({"show", "--help"}), ExitCode::Done);
    EXPECT_NE(m_lines.at(0).find("--follow "), std::string::npos) << m_lines.at(0);
    EXPECT_EQ(m_errors, std::vector<std::string>{});
}

TEST_F(CommandLine, RefusesWhatItDoesNotKnowWithASentence)
{
    for (auto const& words : std::vector<std::vector<std::string>>{{},
                                                                   {"cure"},
                                                                   {"show"},
                                                                   {"show", "a", "--no-such-option"},
                                                                   {"show", "a", "--since", "yesterday"},
                                                                   {"show", "a", "--level", "loud"},
                                                                   {"show", "a", "--thread", "x"},
                                                                   {"live", "--timeout", "0"}})
    {
        EXPECT_EQ(Run(words), ExitCode::UsageError);
        ASSERT_EQ(m_errors.size(), 1u);
        EXPECT_TRUE(m_errors[0].starts_with("doctor: ")) << m_errors[0];
        EXPECT_TRUE(m_errors[0].ends_with("\ndoctor --help lists the commands")) << m_errors[0];
        EXPECT_EQ(m_lines, std::vector<std::string>{});
    }
}

TEST_F(CommandLine, SaysWhatFails)
{
    EXPECT_EQ(Run({"show", "nowhere"}), ExitCode::Failed);
    EXPECT_EQ(m_errors, std::vector<std::string>{"doctor: there is no log at nowhere"});
    EXPECT_EQ(Run({"show", "/nowhere"}), ExitCode::Failed); // no option: a path as shells here write it
}
