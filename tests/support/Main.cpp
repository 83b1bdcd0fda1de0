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

// Ends a hanging test program before ctest's own limit does, and names the test. A bare thread: a std::thread makes
// calls while it starts, which might meet functions that the test is just replacing.
void StartWatchdog()
{
    CloseHandle(CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr));
}

// Wine's debugger, which would show the crash, may end the program with code 0, as a passed test.
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
    std::printf("The list of tests is complete.\n"); // a truncated list would leave out tests unnoticed
    return result;
}
