#include "tests/unit/logging/HandleLedger.h"

#include <gtest/gtest-spi.h>

using namespace test;

TEST(HandleLedger, CountsTheHandlesThatAreOpen)
{
    HandleLedger const handles;
    auto const first = CreateMutexW(nullptr, FALSE, nullptr);
    auto const second = CreateMutexW(nullptr, FALSE, nullptr);
    EXPECT_EQ(handles.Open(), 2u);
    CloseHandle(first);
    CloseHandle(second);
    EXPECT_EQ(handles.Open(), 0u);
}

TEST(HandleLedger, FailsTheTestThatClosesAHandleTwice)
{
    auto const closeTwice = [] {
        HandleLedger const handles;
        auto const handle = CreateMutexW(nullptr, FALSE, nullptr);
        CloseHandle(handle);
        CloseHandle(handle);
    };
    EXPECT_NONFATAL_FAILURE(closeTwice(), "closed without being open");
}
