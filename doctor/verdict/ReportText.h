#pragma once
#include "doctor/verdict/Report.h"

#include <string>

namespace doctor
{

// The report for people: the summary, a line for each stage with its findings, remarks, machine and files. Lines are
// separated by line feeds, with none at the end. In colours for a terminal.
std::string ReportText(Report const& report, bool isColoured);

} // namespace doctor
