#pragma once
#include <gtest/gtest.h>
#include <source_location>
#include <string>
#include <vector>

namespace test
{

// Lines that two threads write: first the common ones, then those of each thread in its own order, the threads in any.
struct InterleavedLines
{
    std::vector<std::wstring> common;
    std::vector<std::wstring> oneThread;
    std::vector<std::wstring> otherThread;
};

// Both fail the test, at the place of their call, unless the lines are the expected ones. They show the first line that
// differs, marked with >, among its neighbours.
void ExpectLines(std::vector<std::wstring> const& lines, std::vector<std::wstring> const& expected,
                 std::source_location where = std::source_location::current());
void ExpectInterleaved(std::vector<std::wstring> const& lines, InterleavedLines const& expected,
                       std::source_location where = std::source_location::current());

// While it lives, each failure names the place, too: for functions that expect several things for a test.
inline testing::ScopedTrace CalledFrom(std::source_location where)
{
    return {where.file_name(), static_cast<int>(where.line()), "called from here"};
}

} // namespace test
