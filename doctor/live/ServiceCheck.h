#pragma once
#include "doctor/live/AppService.h"
#include "doctor/live/LiveOptions.h"
#include "doctor/verdict/Finding.h"

#include <vector>

namespace doctor
{

// What came of asking the app's service.
struct Asked
{
    std::optional<ConnectionStatus> status; // of the connection; nothing: none came
    bool appRuns = false;                   // the connection is open, and the app has answered on it
    std::vector<Finding> findings;          // about start-up, service, channel and the stored URI
};

// Opens the service and, when it opens, asks for the channel.
Asked AskService(AppService& service, LiveOptions const& options);

} // namespace doctor
