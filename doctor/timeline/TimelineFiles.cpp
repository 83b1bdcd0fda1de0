#include "doctor/timeline/TimelineFiles.h"

#include "doctor/base/OutputFile.h"
#include "doctor/timeline/TimelinePage.h"
#include "doctor/timeline/TraceEvents.h"

namespace doctor
{

namespace
{

using WriteTimeline = void (*)(Timeline const& timeline, WritePiece const& write);

void WriteFileOf(Timeline const& timeline, std::filesystem::path const& path, WriteTimeline writeTimeline)
{
    if (!path.empty())
    {
        OutputFile const file(path);
        writeTimeline(timeline, [&](std::string_view piece) { file.Write(piece); });
    }
}

} // namespace

void WriteTimelineFiles(Timeline const& timeline, TimelineFiles const& files)
{
    WriteFileOf(timeline, files.page, WriteTimelinePage);
    WriteFileOf(timeline, files.trace, WriteTraceEvents);
}

} // namespace doctor
