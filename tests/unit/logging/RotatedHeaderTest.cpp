#include "tests/unit/logging/LogFixture.h"
#include "tests/unit/logging/SuiteProgram.h"
#include "utils/Locale.h"
#include "utils/OSVersion.h"

using namespace test;
using namespace zant;

namespace
{

// Targets with the header of their constructor.
class RotatedHeader : public LogFixture
{
  protected:
    // The lines of the log after its rotation and one more line.
    std::vector<std::wstring> RotatedLog(LogTargetDefault& target) const
    {
        target.fileName = LogName();
        target.filePath = LogPath();
        WriteLogOfSize(LogPath(), limit);
        EXPECT_TRUE(target.Open());
        target.Log(LogLevel::Error, L"r", L"p", L"co", L"ca", L"detail", L"origin", L"line", nullptr, 0, true);
        return ReadLines(LogPath());
    }

    static std::vector<std::wstring> Messages(std::vector<std::wstring> lines)
    {
        for (auto& line : lines)
        {
            line = MessageOf(line);
        }
        return lines;
    }
};

std::wstring const asterisks(78, L'*');

struct Machine
{
    Machine()
    {
        OSVersion numbers;
        ProbeOSVersion(numbers);
        GetOSName(numbers, name);
        GetOSVersionText(numbers, version);
        GetOSBuildText(build);
        GetUserLocale(locale);
    }

    std::wstring name, version, build, locale;
};

} // namespace

TEST_F(RotatedHeader, HasSevenLinesWithoutTheSuite)
{
    Machine const machine;
    LogTargetDefault target;
    EXPECT_EQ(Messages(RotatedLog(target)),
              (std::vector<std::wstring>{asterisks, L"Bit: 64", L"OS Build Version: " + machine.build,
                                         L"OS Locale: " + machine.locale, L"OS Name: " + machine.name,
                                         L"OS Version: " + machine.version, asterisks, L"line"}));
}

TEST_F(RotatedHeader, HasEightLinesWithTheSuite)
{
    SuiteProgram const suite;
    Machine const machine;
    LogTargetDefault target;
    EXPECT_EQ(Messages(RotatedLog(target)),
              (std::vector<std::wstring>{asterisks, L"Bit: 64", std::wstring(L"HOV Version: ") + suiteVersion,
                                         L"OS Build Version: " + machine.build, L"OS Locale: " + machine.locale,
                                         L"OS Name: " + machine.name, L"OS Version: " + machine.version, asterisks,
                                         L"line"}));
}

TEST_F(RotatedHeader, IsWrittenAtInfoWithTheFieldsOfTheLineThatFollows)
{
    LogTargetDefault target;
    auto lines = RotatedLog(target);
    ASSERT_EQ(lines.size(), 8u);
    lines.pop_back();
    for (auto const& line : lines)
    {
        auto const columns = Split(line, L" | ");
        ASSERT_EQ(columns.size(), 10u);
        EXPECT_EQ(std::vector(columns.begin() + 1, columns.begin() + 8),
                  (std::vector<std::wstring>{L"[INFO]", L"r", L"p", L"co", L"ca", L"", L""}));
    }
}

// The suite is removed; the header stays as built.
TEST_F(RotatedHeader, TellsWhatWasThereWhenTheTargetWasMade)
{
    auto suite = std::make_unique<SuiteProgram>();
    LogTargetDefault target;
    suite.reset();
    auto const messages = Messages(RotatedLog(target));
    EXPECT_EQ(messages[2], std::wstring(L"HOV Version: ") + suiteVersion);
}

TEST_F(RotatedHeader, IsMissingFromAFileBegunAtStartUp)
{
    LogTargetDefault target;
    target.fileName = LogName();
    target.filePath = LogPath();
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"first");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"first"});
}

TEST_F(RotatedHeader, TakesOverWhatIsMergedIntoIt)
{
    Machine const machine;
    LogTargetDefault target;
    LogHeaderText const given = {
        .entries = {{L"OS Name: ", L"another"}, {L"App: ", L"1"}}, .closing = L"", .merge = true};
    target.threshold = LogLevel::None;
    target.LogHeader(LogLevel::Info, L"", L"", L"", L"", &given, false); // below the threshold: merged, not written
    target.threshold = LogLevel::Info;
    EXPECT_EQ(Messages(RotatedLog(target)),
              (std::vector<std::wstring>{asterisks, L"App: 1", L"Bit: 64", L"OS Build Version: " + machine.build,
                                         L"OS Locale: " + machine.locale, L"OS Name: another",
                                         L"OS Version: " + machine.version, asterisks, L"line"}));
}
