#pragma once
#include "doctor/live/LiveOptions.h"
#include "doctor/log/LogTime.h"
#include "doctor/show/ShowCommand.h"
#include "doctor/verdict/Finding.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace doctor
{

// What the program uses of the system.
struct Surroundings
{
    WriteText write;              // takes the lines of what was asked for
    WriteText writeError;         // takes a sentence about what fails
    std::function<void()> pause;  // between two looks at what changes
    std::function<LogTime()> now; // the local time

    // Whether what takes the lines shows colours unasked. None: it does not.
    std::function<bool()> takesColours{};

    // What is found on this machine. None: the program does not look.
    std::function<std::vector<Finding>(LiveOptions const&)> look{};

    // The log that is read where no path is given. None: a path has to be given.
    std::function<std::filesystem::path()> ownLog{};

    // isAsked: by an option.
    bool AreColoured(bool isAsked) const { return isAsked || (takesColours && takesColours()); }
};

} // namespace doctor
