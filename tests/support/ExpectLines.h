#pragma once
#include <gtest/gtest.h>
#include <source_location>
#include <string>
#include <vector>

namespace test
{

// Lines of two threads: the common ones first, then those of each thread in its own order, interleaved in any way.
struct InterleavedLines
{
    std::vector<std::wstring> common;
    std::vector<std::wstring> oneThread;
    std::vector<std::wstring> otherThread;
};

// Both fail the test, at the place of their call, unless the lines are the expected ones. They show the first
// difference, marked with >, and the lines around it.
void ExpectLines(std::vector<std::wstring> const& lines, std::vector<std::wstring> const& expected,
                 std::source_location where = std::source_location::current());
void ExpectInterleaved(std::vector<std::wstring> const& lines, InterleavedLines const& expected,
                       std::source_location where = std::source_location::current());

// Adds the place to each failure while it exists, for functions with several expectations.
inline testing::ScopedTrace CalledFrom(std::source_location where)
{
    return {where.file_name(), static_cast<int>(where.line()), "called from here"};
}

} // namespace test
