#include "simulator/scenario/PlayFiles.h"

#include "doctor/base/Error.h"
#include "doctor/timeline/LogTimeline.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/log/AppLog.h"
#include "simulator/scenario/PlayTimeline.h"

namespace sim
{

void WritePlayFiles(doctor::TimelineFiles const& files, std::wstring const& title, Device const& device,
                    std::span<Timeline::Item const> items)
try
{
    std::filesystem::path const log = AppLogOn(device);
    auto timeline = FileExists(log)
                        ? doctor::TimelineOfLogs({log.parent_path()}, std::nullopt, ToUtf8(title), false).timeline
                        : doctor::Timeline{.title = ToUtf8(title), .summary = "The app has written no log."};
    AddPlayed(timeline, items);
    WriteTimelineFiles(timeline, files);
}
catch (doctor::Error const& error)
{
    throw Error(FromUtf8(error.what()));
}

} // namespace sim
