#pragma once
#include "doctor/log/LogLine.h"
#include "doctor/stories/Line.h"

#include <cstddef>
#include <cstdint>

namespace doctor
{

// A line of the app in one of several log files.
struct LogPlace
{
    LogTime time{};
    std::size_t file = 0;     // an index of the files that are read
    std::uint64_t number = 0; // in its file, from 1
    Line line = Line::Other;
};

} // namespace doctor
