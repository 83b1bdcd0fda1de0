#pragma once
#include "doctor/timeline/Timeline.h"

#include <filesystem>

namespace doctor
{

// Where a timeline is written to; empty: nowhere.
struct TimelineFiles
{
    std::filesystem::path page;
    std::filesystem::path trace;
};

// Writes the timeline as a page and as trace events. Throws Error when a file cannot be written.
void WriteTimelineFiles(Timeline const& timeline, TimelineFiles const& files);

} // namespace doctor
