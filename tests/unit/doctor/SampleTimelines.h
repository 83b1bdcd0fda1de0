#pragma once
#include "doctor/timeline/Timeline.h"

namespace test
{

// 2024-01-05 09:30:00.000, with which the samples begin.
doctor::LogTime SampleBegin();

// 20 s of two processes, of which one fails: each lane, each outcome, texts that look like HTML, 30 lines in 2 files.
doctor::Timeline SmallTimeline();

// A day of a busy machine: 4,000 lines with a mark each, 1,000 spans.
doctor::Timeline BusyTimeline();

// Ten days, with a request that fails on the third and one on the seventh.
doctor::Timeline LongTimeline();

} // namespace test
