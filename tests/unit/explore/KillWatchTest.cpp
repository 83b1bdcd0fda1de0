#include "explore/kill/Watch.h"
#include "tests/support/ChildProcess.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

using namespace explore::kill;

namespace
{

// A program that loads the library: it releases a semaphore ten times.
class KillWatchTest : public testing::Test
{
  protected:
    static constexpr long releases = 10;

    KillWatchTest() { SetEnvironmentVariableW(sectionVariable, m_name.c_str()); }
    KillWatchTest(KillWatchTest const&) = delete;
    KillWatchTest& operator=(KillWatchTest const&) = delete;
    ~KillWatchTest() override { SetEnvironmentVariableW(sectionVariable, nullptr); }

    DWORD Run(std::wstring const& what)
    {
        return test::ChildProcess(L"watched_program.exe", L"\"" WATCH_LIBRARY L"\" " + what).ExitCode();
    }

    // How often the program has released the semaphore.
    long Released()
    {
        long count = 0;
        while (WaitForSingleObject(m_semaphore.Get(), 0) == WAIT_OBJECT_0)
        {
            ++count;
        }
        return count;
    }

    // So many of its first calls do that.
    long ReleasesAmong(std::span<Call const> calls)
    {
        return static_cast<long>(
            std::ranges::count(calls, std::string_view("NtReleaseSemaphore"),
                               [&](Call const& call) { return std::string_view(m_watch.NameOf(call)); }));
    }

    std::wstring const m_name = L"velmo-kill-watch-test-" + std::to_wstring(GetCurrentProcessId());
    std::wstring const m_semaphoreName = m_name + L"-semaphore";
    sim::Handle const m_semaphore{CreateSemaphoreW(nullptr, 0, releases, m_semaphoreName.c_str())};
    Watch m_watch{m_name};
};

} // namespace

TEST_F(KillWatchTest, NotesTheCallsOfAProcessThatIsNotEnded)
{
    m_watch.Await(std::nullopt);
    EXPECT_EQ(Run(m_semaphoreName), 0u);
    EXPECT_TRUE(m_watch.HasCome());
    EXPECT_FALSE(m_watch.IsKilled());
    EXPECT_EQ(ReleasesAmong(m_watch.Calls()), releases);
    EXPECT_EQ(Released(), releases);
    EXPECT_STREQ(m_watch.NameOf(m_watch.Calls().back()), "NtTerminateProcess");
}

TEST_F(KillWatchTest, EndsTheProcessBeforeExactlyTheCallThatIsMeant)
{
    m_watch.Await(std::nullopt);
    Run(m_semaphoreName);
    Released();
    std::vector<Call> const calls(m_watch.Calls().begin(), m_watch.Calls().end());
    ASSERT_GE(calls.size(), static_cast<std::size_t>(releases));
    for (std::uint32_t killAt = 0; killAt < calls.size(); ++killAt)
    {
        SCOPED_TRACE(killAt);
        m_watch.Await(killAt);
        EXPECT_EQ(Run(m_semaphoreName), killedCode);
        EXPECT_TRUE(m_watch.IsKilled());
        EXPECT_EQ(m_watch.Calls().size(), killAt);
        EXPECT_EQ(Released(), ReleasesAmong(std::span(calls).first(killAt)));
    }
}

TEST_F(KillWatchTest, LetsAProcessRunThatMakesFewerCalls)
{
    m_watch.Await(1'000'000);
    EXPECT_EQ(Run(m_semaphoreName), 0u);
    EXPECT_FALSE(m_watch.IsKilled());
}

TEST_F(KillWatchTest, WatchesOneProcessForEachTimeThatOneIsAwaited)
{
    m_watch.Await(0);
    EXPECT_EQ(Run(m_semaphoreName), killedCode);
    EXPECT_EQ(Run(m_semaphoreName), 0u);
    EXPECT_EQ(Released(), releases);
    EXPECT_TRUE(m_watch.Calls().empty());
}

TEST_F(KillWatchTest, EndsLongWaitsWhenTimePasses)
{
    m_watch.SetTimePasses(true);
    auto const start = GetTickCount64();
    EXPECT_EQ(Run(L"wait"), 0u);
    EXPECT_LT(GetTickCount64() - start, 60'000u); // all of the wait
}
