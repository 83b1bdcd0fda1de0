#include "helper/Arguments.h"

#include <gtest/gtest.h>

using helper::Arguments;
using Words = std::vector<std::wstring>;

namespace
{

Arguments Parse(Words const& words)
{
    auto const arguments = helper::ParseArguments(words);
    EXPECT_TRUE(arguments);
    return arguments.value_or(Arguments{});
}

// What the person is told.
std::string Refusal(Words const& words)
try
{
    helper::ParseArguments(words);
    return "not refused";
}
catch (helper::UsageError const& error)
{
    return error.what();
}

} // namespace

TEST(Arguments, OfEachCommandAreItsRequestAndTheMessageThatItWaitsFor)
{
    struct Expected
    {
        wchar_t const* name;
        wchar_t const* command;
        wchar_t const* message;
        bool needsUri;
    };
    for (auto const& expected :
         {Expected{L"get-channel-uri", L"GetChannelUri", L"UpdatedChannelURIAvailable", true},
          Expected{L"register", L"RegisterBackgroundTask", L"RegisterBkgTaskDone", true},
          Expected{L"unregister", L"UnregisterBackgroundTask", L"UnregisterBackgroundTaskDone", false},
          Expected{L"exit", L"ExitZEB", L"", false}})
    {
        auto const arguments = Parse({expected.name});
        EXPECT_EQ(arguments.request, (std::vector<Arguments::Entry>{{L"Command", expected.command}}));
        EXPECT_EQ(arguments.expectedMessage, expected.message);
        EXPECT_EQ(arguments.needsUri, expected.needsUri);
        EXPECT_FALSE(arguments.watch);
        EXPECT_EQ(arguments.timeoutMilliseconds, 90'000u);
    }
}

TEST(Arguments, MayBeARequestOfOnesOwn)
{
    auto const arguments = Parse({L"send", L"Command=a=b", L"Empty="});
    EXPECT_EQ(arguments.request, (std::vector<Arguments::Entry>{{L"Command", L"a=b"}, {L"Empty", L""}}));
    EXPECT_EQ(arguments.expectedMessage, L"");
}

TEST(Arguments, MayHaveOptionsAnywhere)
{
    auto const arguments = Parse({L"--timeout", L"3600", L"exit", L"--watch"});
    EXPECT_EQ(arguments.timeoutMilliseconds, 3'600'000u);
    EXPECT_TRUE(arguments.watch);
    EXPECT_EQ(arguments.request.size(), 1u);
    EXPECT_TRUE(Parse({L"--watch"}).request.empty());
}

TEST(Arguments, AreACallForHelp)
{
    EXPECT_FALSE(helper::ParseArguments({}));
    EXPECT_FALSE(helper::ParseArguments({L"help"}));
    EXPECT_FALSE(helper::ParseArguments({L"--help"}));
}

TEST(Arguments, ThatAreWrongAreRefusedWithASentence)
{
    EXPECT_EQ(Refusal({L"regster"}), "there is no command regster");
    EXPECT_EQ(Refusal({L"exit", L"now"}), "exit takes no arguments, and was given now");
    EXPECT_EQ(Refusal({L"send"}), "send takes at least one KEY=VALUE");
    EXPECT_EQ(Refusal({L"send", L"Command"}), "send takes KEY=VALUE, not Command");
    EXPECT_EQ(Refusal({L"send", L"=x"}), "send takes KEY=VALUE, not =x");
    EXPECT_EQ(Refusal({L"--timeout", L"5"}), "give a command, --watch or both");
    EXPECT_EQ(Refusal({L"exit", L"--timeout"}), "--timeout takes seconds, 1 to 3600");
    for (auto const* seconds : {L"", L"0", L"3601", L"99999999999", L"-1", L"1s"})
    {
        EXPECT_TRUE(Refusal({L"exit", L"--timeout", seconds}).starts_with("--timeout takes seconds, 1 to 3600, not "));
    }
}

TEST(Arguments, HaveAHelpThatNamesEveryCommandOptionAndExitCode)
{
    std::wstring const help = helper::helpText;
    for (auto const* part :
         {L"get-channel-uri", L"register", L"unregister", L"exit", L"send KEY=VALUE", L"--watch", L"--timeout SECONDS",
          L"0 done", L"1 the client could not do it", L"2 usage error", L"3 no connection", L"4 no answer"})
    {
        EXPECT_NE(help.find(part), std::wstring::npos) << std::string(part, part + std::wcslen(part));
    }
}
