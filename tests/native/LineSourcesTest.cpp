// The doctor's table of lines against the sources of the app that writes them.
#include "doctor/stories/Line.h"
#include "doctor/stories/Story.h"
#include "tests/native/AllLines.h"
#include "tests/native/CppLiterals.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>

using doctor::Line;
using doctor::LineOf;
using doctor::MessageOf;
using TextSet = std::set<std::string>;

namespace
{

// Literals of app/ and service/ that no log site writes.
TextSet const names = {
    "",
    "ZEB",
    "ZEBMain",
    "AppService", // fields of a line
    "LaunchHOV",
    "CURIUpdated",
    "NotificationReceived", // parameter groups
    "PushNotificationBGTask",
    "URITimerBGTask", // tasks
    "CURI",           // in the local settings
    "Command",
    "GetChannelUri",
    "RegisterBackgroundTask", // messages
    "UnregisterBackgroundTask",
    "ExitZEB",
    "NewMessage", //
    "UpdatedChannelURIAvailable",
    "RegisterBkgTaskDone", //
    "BackgroundtaskRegistrationFailed",
    "NewCuri", //
    "UnregisterBackgroundTaskDone",
    "MessageAck",
    "Ack",                                            //
    "VelmoNotificationClient.App",                    // classes
    "VelmoNotificationClient.MainPage",               //
    "VelmoNotificationClient.NotificationAppService", //
    "VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider",
    "VelmoNotificationClientLock",
    "ms-appx:///MainPage.xaml", // others
};

std::filesystem::path const sources = PRODUCT_SOURCES;

std::string CodeOf(std::filesystem::path const& file)
{
    std::ifstream stream(file);
    EXPECT_TRUE(stream.is_open()) << file;
    std::string const code = test::WithoutComments(std::string(std::istreambuf_iterator<char>(stream), {}));
    return std::regex_replace(code, std::regex("#include[^\n]*"), "");
}

// Of the log sites: app/ and service/.
std::string CodeOfLogSites()
{
    std::string code;
    for (auto const* const folder : {"app", "service"})
    {
        for (auto const& file : std::filesystem::recursive_directory_iterator(sources / folder))
        {
            auto const extension = file.path().extension();
            code += extension == ".cpp" || extension == ".h" ? CodeOf(file.path()) + ";\n" : "";
        }
    }
    return code;
}

// A format's text stands before its first conversion.
std::string BeforeConversion(std::string const& format)
{
    return format.substr(0, format.find('%'));
}

TextSet TextsIn(std::string const& code)
{
    TextSet texts;
    for (auto const& literal : test::LiteralsIn(code))
    {
        texts.insert(literal.find('%') == literal.npos ? literal : BeforeConversion(literal));
    }
    texts.erase("C"); // extern "C"
    return texts;
}

TextSet Without(TextSet texts, TextSet const& others)
{
    std::erase_if(texts, [&](auto const& text) { return others.contains(text); });
    return texts;
}

bool IsFromHeader(Line line)
{
    return line >= Line::HeaderEdge && line <= Line::SystemVersion;
}

TextSet TextsOf(auto const& isWanted)
{
    TextSet texts;
    for (auto const line : test::AllLines())
    {
        if (isWanted(line))
        {
            texts.emplace(MessageOf(line));
        }
    }
    return texts;
}

TextSet Matches(std::string const& code, char const* pattern)
{
    std::regex const regex(pattern);
    TextSet texts;
    for (std::sregex_iterator match(code.begin(), code.end(), regex); match != std::sregex_iterator(); ++match)
    {
        texts.merge(TextsIn((*match)[1]));
    }
    return texts;
}

} // namespace

TEST(LineSourcesLiterals, AreFoundOutsideComments)
{
    auto const code = test::WithoutComments("f(L\"one\"); // L\"two\"\n/* \"three\" */ g(L'\"', \"a // b\", 60'000, "
                                            "\"q\\\"q\");\nh(L\"long \"\n  L\"text\")");
    EXPECT_EQ(test::LiteralsIn(code), (std::vector<std::string>{"one", "a // b", "q\"q", "long text"}));
}

TEST(LineSources, HaveEachLineOfTheLogSites)
{
    auto const isFromSite = [](Line line) { return !IsFromHeader(line) && line != Line::Withheld; };
    auto const texts = TextsIn(CodeOfLogSites());
    EXPECT_EQ(Without(names, texts), TextSet()) << "names that no source has any more";
    EXPECT_EQ(Without(Without(texts, names), TextsOf(isFromSite)), TextSet()) << "texts that the doctor does not know";
    EXPECT_EQ(Without(TextsOf(isFromSite), texts), TextSet()) << "lines of the doctor that no source writes";
}

TEST(LineSources, HaveEachLineOfTheHeader)
{
    auto const texts = TextsIn(CodeOf(sources / "logging" / "BuildLogHeader.cpp"));
    TextSet const others = {"HOV\\Tessaline.exe", "64"};
    EXPECT_EQ(Without(texts, others), TextsOf(IsFromHeader));
}

TEST(LineSources, HaveTheNoticeOfWithheldLines)
{
    auto const notices = Matches(CodeOf(sources / "logging" / "Redaction.cpp"), "return (\"[^\"]*\")_utf16");
    EXPECT_EQ(notices, TextSet{std::string(MessageOf(Line::Withheld))});
}

TEST(LineSources, HaveNoErrorThatFailsNoStory)
{
    auto const code = CodeOfLogSites();
    auto errors = Matches(code, R"(\.Error\(\s*(L"[^"]*"))");
    errors.merge(Matches(code, R"(ReplyLines \w+\{\s*\{[^}]*\},\s*\{([^}]*)\})"));
    errors.merge(Matches(code, R"(Register\(task, L"[^"]*",\s*(L"[^"]*"))"));
    TextSet failing = {
        std::string(MessageOf(Line::NoUriFound)), // stands behind UriNotFound, which fails the story
    };
    for (auto const& story : doctor::Stories())
    {
        for (auto const& end : story.ends)
        {
            if (end.result == doctor::Result::Failed)
            {
                failing.emplace(MessageOf(end.line));
            }
        }
    }
    EXPECT_EQ(errors.size(), 16u);
    EXPECT_EQ(Without(errors, failing), TextSet());
}
