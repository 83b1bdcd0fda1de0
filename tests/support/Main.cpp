#include <cstdio>
#include <gtest/gtest.h>
#include <windows.h>

namespace
{

DWORD WINAPI Watch(void*)
{
    constexpr DWORD limitMilliseconds = 100'000;
    SleepEx(limitMilliseconds, FALSE); // not Sleep, which tests replace
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    std::fprintf(stderr, "watchdog: %s.%s still runs after %lu s\n", info ? info->test_suite_name() : "?",
                 info ? info->name() : "?", limitMilliseconds / 1000);
    std::fflush(stderr);
    return static_cast<DWORD>(TerminateProcess(GetCurrentProcess(), 99));
}

// Ends a hanging test program before ctest's own limit does, saying which test hung. The thread is a bare one: a
// std::thread makes calls of its own while it starts, and could meet with functions that the test is just replacing.
void StartWatchdog()
{
    CloseHandle(CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr));
}

// Wine's debugger, which would show the crash, may end the program with the code 0: a test that passed.
LONG WINAPI EndAfterCrash(EXCEPTION_POINTERS* exception)
{
    auto const& record = *exception->ExceptionRecord;
    std::fprintf(stderr, "crashed: exception 0x%08lX at %p\n", record.ExceptionCode, record.ExceptionAddress);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 98);
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

int main(int argc, char** argv)
{
    SetUnhandledExceptionFilter(EndAfterCrash);
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests))
    {
        StartWatchdog();
        return RUN_ALL_TESTS();
    }
    auto const result = RUN_ALL_TESTS();
    std::printf("The list of tests is complete.\n"); // what cuts a list short would leave tests out unnoticed
    return result;
}
