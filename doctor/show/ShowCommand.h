#pragma once
#include "doctor/show/Filter.h"
#include "doctor/show/LineFormat.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace doctor
{

struct ShowOptions
{
    std::vector<std::filesystem::path> paths;
    std::filesystem::path ownLog; // instead of paths: a live file, which is shown with the logs beside it
    Filter filter;
    LineFormat format;
    bool follows = false;
};

// Takes a line of output, in UTF-8 and without a line end.
using WriteText = std::function<void(std::string_view)>;

// doctor show: writes the lines of logs, then a sentence for each file and folder that cannot be read; false when there
// is one. With `follows` it goes on with what is added to the own log, which may be missing yet, or to the last of the
// files, and calls `pause` between two looks, until one of the two throws. Throws Error as FindLogs does.
bool Show(ShowOptions const& options, WriteText const& write, WriteText const& writeError,
          std::function<void()> const& pause);

} // namespace doctor
