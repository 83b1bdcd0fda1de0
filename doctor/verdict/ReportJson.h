#pragma once
#include "doctor/verdict/Report.h"

#include <string>

namespace doctor
{

// The report as a JSON object on one line.
std::string ReportJson(Report const& report);

} // namespace doctor
