#pragma once
#include "doctor/timeline/Timeline.h"

namespace doctor
{

// Writes the timeline as trace events, a JSON text that Perfetto and the browser's own tracing page open: each lane is
// a process of the trace, its spans stand on as many threads as overlap, its marks are instants. Times are microseconds
// from the earliest one. Throws what `write` throws.
void WriteTraceEvents(Timeline const& timeline, WritePiece const& write);

} // namespace doctor
