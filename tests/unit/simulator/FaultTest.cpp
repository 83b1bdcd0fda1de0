#include "simulator/protocol/Fault.h"
#include "simulator/base/Error.h"
#include "simulator/base/Words.h"
#include "simulator/protocol/FaultTable.h"

#include <gtest/gtest.h>

namespace
{

sim::Fault Parse(std::wstring_view words)
{
    return sim::ParseFault(sim::SplitWords(words));
}

std::wstring ErrorOf(std::wstring_view words)
{
    try
    {
        Parse(words);
    }
    catch (sim::Error const& error)
    {
        return error.Message();
    }
    return L"no error";
}

constexpr wchar_t launch[] = L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync ";

std::wstring LaunchFault(std::wstring const& rest)
{
    return launch + rest;
}

} // namespace

TEST(FaultTest, IsReadWithItsResultAndCount)
{
    auto const fault = Parse(LaunchFault(L"completion 0x80070005 3"));
    EXPECT_EQ(fault.kind, sim::FaultKind::Completion);
    EXPECT_EQ(fault.Result(), static_cast<std::int32_t>(0x80070005));
    EXPECT_EQ(fault.times, 3u);
    EXPECT_EQ(Parse(L"CoreApplication.Exit now 0x80004005").times, sim::Fault::always);
    EXPECT_EQ(Parse(LaunchFault(L"delay 250")).value, 250u);
    EXPECT_EQ(Parse(LaunchFault(L"never 2")).times, 2u);
    EXPECT_EQ(Parse(L"AppServiceConnection.SendMessageAsync status 2").value, 2u);
}

TEST(FaultTest, IsReadWithTheCallsBeforeIt)
{
    auto const limited = Parse(L"BackgroundTaskBuilder.Register now 0x80070718 1 after 2");
    EXPECT_EQ(limited.times, 1u);
    EXPECT_EQ(limited.after, 2u);
    auto const unlimited = Parse(LaunchFault(L"cancelled after 3"));
    EXPECT_EQ(unlimited.times, sim::Fault::always);
    EXPECT_EQ(unlimited.after, 3u);
}

TEST(FaultTest, ComesBackFromItsWords)
{
    for (auto const* words :
         {L"CoreApplication now 0x80040154 2", L"Window.Current null",
          L"AppServiceConnection.OpenAsync status 4 2 after 1", L"AppServiceConnection.OpenAsync cancelled after 1",
          L"AppServiceConnection.OpenAsync unheard 0x80000013", L"AppServiceConnection.OpenAsync ended 1",
          L"AppServiceConnection.OpenAsync held after 1"})
    {
        EXPECT_EQ(Parse(words).Words(), sim::SplitWords(words));
    }
    EXPECT_EQ(Parse(LaunchFault(L"delay 250 1")).Words(), sim::SplitWords(LaunchFault(L"delay 250 1")));
}

TEST(FaultTest, OfAnUnknownCallIsRefusedWithTheKnownOnes)
{
    auto const message = ErrorOf(L"CoreApplication.Exti now 0x80004005");
    EXPECT_EQ(message.find(L"there is no call CoreApplication.Exti."), 0u);
    EXPECT_NE(message.find(L"\n  CoreApplication.Exit\n"), std::wstring::npos);
}

TEST(FaultTest, ThatTheCallDoesNotKnowIsRefused)
{
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit never"),
              L"CoreApplication.Exit is not asynchronous: it has no completion; use now");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit null"),
              L"CoreApplication.Exit returns nothing that could be null; use now");
    EXPECT_EQ(ErrorOf(LaunchFault(L"status 1")), L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync "
                                                 L"completes with no status; use completion");
    EXPECT_EQ(ErrorOf(L"AppServiceConnection.OpenAsync status 0"), L"the status 0 is success");
}

TEST(FaultTest, ThatIsIncompleteOrOverfullIsRefused)
{
    EXPECT_NE(ErrorOf(L"CoreApplication.Exit"), L"no error");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit later"),
              L"there is no fault later; use now, completion, never, null, delay, cancelled, status, unheard, ended or "
              L"held");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now"), L"now needs a number: result");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now soon"), L"soon is no number (result)");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now 5"), L"5 is no failing HRESULT (they begin with 0x8)");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now 0x80004005 often"), L"often is no number (how many times)");
    EXPECT_EQ(ErrorOf(LaunchFault(L"held 1")), L"held ends when the faults are cleared, not after a number of times");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now 0x80004005 1 2"), L"unexpected 2 after the fault");
    EXPECT_EQ(ErrorOf(L"CoreApplication.Exit now 0x80004005 after"), L"after needs a number: how many calls before it");
}
