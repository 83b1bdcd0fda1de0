#pragma once
#include "doctor/timeline/Timeline.h"
#include "simulator/scenario/Timeline.h"

#include <span>

namespace sim
{

// Adds what the platform, the helpers and the desktop component did: a mark for each item but the log's lines, which
// the doctor has, and a span for what lasts: a process of the app, a task's instance, a connection, a desktop
// component, a helper.
void AddPlayed(doctor::Timeline& timeline, std::span<Timeline::Item const> items);

} // namespace sim
