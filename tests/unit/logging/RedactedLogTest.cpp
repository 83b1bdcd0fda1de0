#include "tests/unit/logging/RedactedLog.h"
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"
#include "tests/support/ShortMemory.h"
#include "utils/Utf8.h"

#include <functional>

using namespace test;
using namespace zant;

namespace
{

constexpr std::size_t mostCharacters = 4'094;

// How a string gets into a message.
struct Way
{
    char const* name;
    void (*log)(LogTargetDefault& target, LogLevel level, std::wstring const& text);
};

void PrintTo(Way const& way, std::ostream* out)
{
    *out << way.name;
}

std::string Narrow(std::wstring const& text)
{
    return ToUtf8(text).value();
}

Way const ways[] = {
    {"Formatted", [](auto& target, auto level, auto& text) { LogWide(target, level, L"%ls", text.c_str()); }},
    {"TheFormat", [](auto& target, auto level, auto& text) { LogWide(target, level, text.c_str()); }},
    {"AsItStands", [](auto& target, auto level,
                      auto& text) { target.Log(level, L"", L"", L"", L"", L"", L"", text.c_str(), nullptr, 0, true); }},
    {"FormattedNarrow",
     [](auto& target, auto level, auto& text) { LogNarrow(target, level, "%s", Narrow(text).c_str()); }},
    {"TheFormatNarrow", [](auto& target, auto level, auto& text) { LogNarrow(target, level, Narrow(text).c_str()); }},
    {"AsItStandsNarrow",
     [](auto& target, auto level, auto& text) {
         target.Log(level, L"", L"", L"", L"", "", "", Narrow(text).c_str(), nullptr, 0, true);
     }},
};

class RedactedLogWay : public RedactedLog, public testing::WithParamInterface<Way>
{
  protected:
    void Log(std::wstring const& text, LogLevel level = LogLevel::Info) { GetParam().log(target, level, text); }
};

INSTANTIATE_TEST_SUITE_P(Every, RedactedLogWay, testing::ValuesIn(ways),
                         [](auto const& way) { return way.param.name; });

// A message of maximum length with the string at an index.
std::wstring LongMessage(std::wstring const& text, std::size_t place)
{
    std::wstring message(mostCharacters - text.size(), L'x');
    return message.insert(place, text);
}

std::vector<std::size_t> PlacesFor(std::wstring const& text)
{
    auto const last = mostCharacters - text.size();
    return {0, 1, 7, 8, 15, 16, 17, 1'000, last - 17, last - 8, last - 1, last};
}

} // namespace

TEST_F(RedactedLog, ATargetHasTheNineKeysInTheirOrder)
{
    EXPECT_EQ(target.maskedKeys,
              (std::vector<std::wstring>{L"proxyusername", L"proxy-user", L"proxyuser", L"user", L"username",
                                         L"proxy-password", L"proxypassword", L"password", L"proxypass"}));
}

TEST_P(RedactedLogWay, ATokenIsKeptOutAtEveryPlaceOfAMessage)
{
    Opened();
    auto const places = PlacesFor(token);
    for (auto const place : places)
    {
        Log(LongMessage(token, place));
    }
    EXPECT_EQ(Messages(), std::vector(places.size(), notice));
    EXPECT_FALSE(AnyFileHolds(secret));
    EXPECT_FALSE(AnyFileHolds(L"eyJ"));
}

TEST_P(RedactedLogWay, ACredentialIsMaskedAtEveryPlaceOfAMessage)
{
    Opened();
    std::vector<std::wstring> expected;
    for (auto const place : PlacesFor(element))
    {
        auto message = LongMessage(element, place);
        Log(message);
        expected.push_back(message.replace(place, element.size(), maskedElement));
    }
    EXPECT_EQ(Messages(), expected);
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_P(RedactedLogWay, EveryKeyIsMasked)
{
    Opened();
    std::vector<std::wstring> expected;
    for (auto const& key : CredentialKeys())
    {
        Log(L"<" + key + L">" + secret + L"</" + key + L">");
        expected.push_back(L"<" + key + L">****</" + key + L">");
    }
    EXPECT_EQ(Messages(), expected);
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_P(RedactedLogWay, ATokenTurnsEveryLevelIntoWarnAndACredentialNone)
{
    Opened();
    target.threshold = LogLevel::Trace;
    auto const levels = {10, 20, 30, 40, 50, 60, 70, 35};
    for (auto const level : levels)
    {
        Log(token, LogLevel{level});
        Log(element, LogLevel{level});
    }
    auto const lines = Lines();
    ASSERT_EQ(lines.size(), 2 * levels.size());
    auto line = lines.begin();
    for (auto const level : levels)
    {
        EXPECT_EQ((*line)[1], L"[WARN]");
        EXPECT_EQ((*line++).back(), notice);
        EXPECT_EQ((*line)[1], L"[" + std::wstring(LevelName(LogLevel{level})) + L"]");
        EXPECT_EQ((*line++).back(), maskedElement);
    }
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, TheThresholdIsTestedWithTheCallsOwnLevel)
{
    Opened();
    target.threshold = LogLevel::Error;
    LogAt(target, 0, token.c_str());
    EXPECT_TRUE(Messages().empty());
    LogWide(target, LogLevel::Fatal, token.c_str());
    ASSERT_EQ(Lines().size(), 1u);
    EXPECT_EQ(Lines()[0][1], L"[WARN]");
}

TEST_F(RedactedLog, TheOtherFieldsOfASkippedLineAreWrittenAsUsual)
{
    Opened().Log(LogLevel::Error, L"r", L"p", L"co", L"ca", L"d", L"o", token.c_str(), nullptr, 1'704'447'012'045u,
                 true);
    auto const lines = Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(std::vector(lines[0].begin() + 1, lines[0].end()),
              (std::vector<std::wstring>{L"[WARN]", L"r", L"p", L"co", L"ca", L"d", L"o",
                                         std::to_wstring(GetCurrentThreadId()), notice}));
    EXPECT_TRUE(lines[0][0].ends_with(L":045"));
}

TEST_F(RedactedLog, AMessageThatIsNotCutIsRedactedToItsEnd)
{
    std::wstring const long1(100'000, L'x');
    LogAt(Opened(), 0, (long1 + token).c_str());
    LogAt(target, 0, (long1 + element).c_str());
    EXPECT_EQ(Messages(), (std::vector{notice, long1 + maskedElement}));
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, ASecretAcrossTheArgumentsOfAFormatIsFound)
{
    LogWide(Opened(), LogLevel::Info, L"%ls%ls", L"eyJhbGciOiJub25lIn0.ey", (L"J" + secret).c_str());
    LogWide(target, LogLevel::Info, L"<%ls>%ls</%ls>", L"user", secret.c_str(), L"user");
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{notice, L"<user>****</user>"}));
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, AChannelUriWithATokenIsKeptOut)
{
    auto const uri = L"https://db5.notify.example.com/?token=" + token + L"&expires=30";
    LogWide(Opened(), LogLevel::Info, L"Channel URI: %ls", uri.c_str());
    EXPECT_EQ(Messages(), std::vector{notice});
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, AFileInUtf8IsRedactedAsWell)
{
    target.wideOutput = false;
    LogWide(Opened(), LogLevel::Info, token.c_str());
    LogWide(target, LogLevel::Info, element.c_str());
    EXPECT_TRUE(AnyFileHolds(notice));
    EXPECT_TRUE(AnyFileHolds(maskedElement));
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, TheLinesOfAHeaderAreRedacted)
{
    LogHeaderText const header = {.title = token, .entries = {{L"Proxy: ", element}}, .closing = L"end"};
    Opened().LogHeader(LogLevel::Info, L"", L"", L"", L"", &header, true);
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{notice, L"Proxy: " + maskedElement, L"end"}));
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, ARotatedCopyHoldsNoSecret)
{
    LogWide(Opened(), LogLevel::Info, element.c_str());
    target.Close();
    {
        UniqueHandle const file(
            CreateFileW(LogPath().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        LARGE_INTEGER end;
        end.QuadPart = limit;
        ASSERT_TRUE(SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.Get()));
    }
    LogWide(Opened(), LogLevel::Info, token.c_str());
    EXPECT_EQ(NamesIn(folder.Path()).size(), 2u);
    EXPECT_TRUE(AnyFileHolds(maskedElement));
    EXPECT_TRUE(AnyFileHolds(notice));
    EXPECT_FALSE(AnyFileHolds(secret));
}

TEST_F(RedactedLog, WithoutMemoryToMaskAMessageItsLineIsLost)
{
    Opened();
    auto const message = std::wstring(100'000, L'x') + element;
    {
        ShortMemory const none;
        LogAt(target, 0, message.c_str());
    }
    EXPECT_TRUE(Messages().empty());
    EXPECT_FALSE(AnyFileHolds(secret));
}

namespace
{

std::uint64_t LogList(Logger& logger, wchar_t const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result = logger.LogV(LogLevel::Info, L"", L"", format, arguments);
    va_end(arguments);
    return result;
}

std::uint64_t LogListNarrow(Logger& logger, char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result = logger.LogV(LogLevel::Info, "", "", format, arguments);
    va_end(arguments);
    return result;
}

} // namespace

// The registry keeps targets for good, so this one is never destroyed.
TEST_F(RedactedLog, EveryOperationOfALoggerIsRedacted)
{
    auto& registered = *new LogTargetDefault;
    Configure(registered);
    registered.threshold = LogLevel::Trace;
    ASSERT_TRUE(registered.Open());
    GetLogTargetRegistry().Register(registered);
    Logger logger;

    auto const log = [&](std::wstring const& text) {
        auto const narrowText = Narrow(text);
        auto const* const wide = text.c_str();
        auto const* const narrow = narrowText.c_str();
        logger.Trace("%s", narrow);
        logger.Trace(L"%ls", wide);
        logger.Debug("%s", narrow);
        logger.Debug(L"%ls", wide);
        logger.Info("%s", narrow);
        logger.Info(L"%ls", wide);
        logger.Warn("", "%s", narrow);
        logger.Warn(L"", L"%ls", wide);
        logger.Error("", "%s", narrow);
        logger.Error(L"", L"%ls", wide);
        logger.Fatal("", "%s", narrow);
        logger.Fatal(L"", L"%ls", wide);
        logger.Log(LogLevel::Info, "", "", "%s", narrow);
        logger.Log(LogLevel::Info, L"", L"", L"%ls", wide);
        LogListNarrow(logger, "%s", narrow);
        LogList(logger, L"%ls", wide);
        logger.TraceIn("", "%s", narrow);
        logger.TraceIn(L"", L"%ls", wide);
        logger.DebugIn("", "%s", narrow);
        logger.DebugIn(L"", L"%ls", wide);
        logger.InfoIn("", "%s", narrow);
        logger.InfoIn(L"", L"%ls", wide);
        logger.WarnIn("", "", "%s", narrow);
        logger.WarnIn(L"", L"", L"%ls", wide);
        logger.ErrorIn("", "", "%s", narrow);
        logger.ErrorIn(L"", L"", L"%ls", wide);
        logger.FatalIn("", "", "%s", narrow);
        logger.FatalIn(L"", L"", L"%ls", wide);
    };
    log(token);
    log(element);
    registered.Close();

    auto expected = std::vector(28, notice);
    expected.insert(expected.end(), 28, maskedElement);
    EXPECT_EQ(Messages(), expected);
    EXPECT_FALSE(AnyFileHolds(secret));
}
