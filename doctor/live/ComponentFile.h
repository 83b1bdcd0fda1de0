#pragma once
#include "doctor/verdict/Finding.h"

#include <filesystem>
#include <string>

namespace doctor
{

// Whether the desktop component's file is there.
Finding ComponentFileFinding(std::filesystem::path const& path);

Finding ComponentCannotBeTold(std::string const& why);

} // namespace doctor
