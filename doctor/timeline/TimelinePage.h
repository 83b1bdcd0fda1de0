#pragma once
#include "doctor/timeline/Timeline.h"

namespace doctor
{

// Writes the timeline as one HTML page in UTF-8. The page needs nothing else: its style, its script and the library
// that draws are in it, and its content security policy forbids it to load or send anything. The page is some 300 KB
// and what the timeline's texts take; it is never in memory as a whole. Throws what `write` throws.
void WriteTimelinePage(Timeline const& timeline, WritePiece const& write);

} // namespace doctor
