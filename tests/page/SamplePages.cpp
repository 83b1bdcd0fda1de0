#include "doctor/timeline/TimelinePage.h"
#include "tests/unit/doctor/SampleTimelines.h"

#include <fstream>
#include <iostream>

namespace
{

void Write(char const* name, doctor::Timeline const& timeline)
{
    std::ofstream file(name, std::ios::binary);
    doctor::WriteTimelinePage(timeline, [&](std::string_view piece) { file << piece; });
    file.close();
    if (!file)
    {
        throw std::runtime_error(std::string("cannot write ") + name);
    }
}

} // namespace

// Writes the pages that timeline_test.py looks at into the current folder.
int main()
try
{
    Write("small.html", test::SmallTimeline());
    Write("busy.html", test::BusyTimeline());
    Write("long.html", test::LongTimeline());
    Write("empty.html", {.title = "empty", .summary = "There is no line."});
}
catch (std::exception const& error)
{
    std::cerr << error.what() << '\n';
    return 1;
}
