#pragma once
#include "doctor/live/LiveOptions.h"
#include "doctor/verdict/Finding.h"

#include <vector>

namespace doctor
{

class AppService;

// doctor live: what an ordinary desktop program can find out about the app on this machine, in the order of the stages.
// It asks the app for its channel, which starts the app; nothing else is changed.
std::vector<Finding> LookAtMachine(LiveOptions const& options);

// The same with another way to the app's service.
std::vector<Finding> LookAtMachine(LiveOptions const& options, AppService& service);

} // namespace doctor
