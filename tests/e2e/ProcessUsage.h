#pragma once
#include <cstddef>
#include <windows.h>

namespace test
{

// What a running process has taken of the system.
struct ProcessUsage
{
    std::size_t handles;
    std::size_t events; // those of the handles that are of events
    std::size_t memory; // bytes that are its own
};

// Of any process; the test fails when it cannot be read.
ProcessUsage UsageOf(unsigned long processId);

} // namespace test
