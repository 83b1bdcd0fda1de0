#include <cstdio>
#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

namespace
{

// Ends a hanging test program before ctest's own limit does, saying which test hung.
void StartWatchdog()
{
    constexpr DWORD limitMilliseconds = 100'000;
    std::thread([] {
        Sleep(limitMilliseconds);
        auto const* info = testing::UnitTest::GetInstance()->current_test_info();
        std::fprintf(stderr, "watchdog: %s.%s still runs after %lu s\n", info ? info->test_suite_name() : "?",
                     info ? info->name() : "?", limitMilliseconds / 1000);
        std::fflush(stderr);
        TerminateProcess(GetCurrentProcess(), 99);
    }).detach();
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests))
    {
        StartWatchdog();
    }
    return RUN_ALL_TESTS();
}
