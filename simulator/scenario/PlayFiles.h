#pragma once
#include "doctor/timeline/TimelineFiles.h"
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <span>
#include <string>

namespace sim
{

// Writes what the doctor draws of the device's logs, with what the platform, the helpers and the desktop component did
// meanwhile. Throws Error.
void WritePlayFiles(doctor::TimelineFiles const& files, std::wstring const& title, Device const& device,
                    std::span<Timeline::Item const> items);

} // namespace sim
