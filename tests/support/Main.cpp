#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

namespace
{

std::atomic<unsigned> secondsInTest = 0;

// Gives each test the whole limit.
class StartLimit : public testing::EmptyTestEventListener
{
    void OnTestStart(testing::TestInfo const&) override { secondsInTest = 0; }
};

// Says how the program ends, and in which test. Programs print only failures, so nothing else names the test.
void TellEnd(char const* how)
{
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    std::fprintf(stderr, "%s in %s.%s\n", how, info ? info->test_suite_name() : "?", info ? info->name() : "?");
    std::fflush(stderr);
}

unsigned LimitInSeconds()
{
    auto const* set = std::getenv("VELMO_TEST_SECONDS");
    return set ? static_cast<unsigned>(std::strtoul(set, nullptr, 10)) : 300;
}

DWORD WINAPI Watch(void*)
{
    auto const limit = LimitInSeconds();
    while (secondsInTest++ < limit)
    {
        SleepEx(1000, FALSE); // not Sleep, which tests replace
    }
    TellEnd(("watchdog: still running after " + std::to_string(limit) + " s").c_str());
    return static_cast<DWORD>(TerminateProcess(GetCurrentProcess(), 99));
}

// Ends a test program whose test hangs before ctest's own limit does, saying which test it is. The thread is a bare
// one: a std::thread makes calls of its own while it starts, and could meet with functions that the test is just
// replacing.
void StartWatchdog()
{
    testing::UnitTest::GetInstance()->listeners().Append(new StartLimit);
    CloseHandle(CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr));
}

// Wine's debugger, which would show the crash, may end the program with code 0, as a passed test.
LONG WINAPI EndAfterCrash(EXCEPTION_POINTERS* exception)
{
    auto const& record = *exception->ExceptionRecord;
    std::fprintf(stderr, "exception 0x%08lX at %p: ", record.ExceptionCode, record.ExceptionAddress);
    TellEnd("crashed");
    TerminateProcess(GetCurrentProcess(), 98);
    return EXCEPTION_CONTINUE_SEARCH;
}

void EndAfterAbort(int)
{
    TellEnd("aborted");
    TerminateProcess(GetCurrentProcess(), 3);
}

void TellEarlyExit()
{
    if (testing::UnitTest::GetInstance()->current_test_info())
    {
        TellEnd("exited");
    }
}

} // namespace

int main(int argc, char** argv)
{
    SetUnhandledExceptionFilter(EndAfterCrash);
    std::signal(SIGABRT, EndAfterAbort);
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests))
    {
        StartWatchdog();
        std::atexit(TellEarlyExit);
        return RUN_ALL_TESTS();
    }
    auto const result = RUN_ALL_TESTS();
    std::printf("The list of tests is complete.\n"); // a truncated list would leave out tests unnoticed
    return result;
}
