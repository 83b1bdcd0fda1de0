#pragma once
#include "doctor/verdict/Finding.h"

#include <string>

namespace doctor
{

// A finding of the machine for people, in UTF-8: a line with result, stage and sentence, then cause and advice if it
// has them. Without a line end.
std::string FindingText(Finding const& finding);

// The same as a JSON object in one line.
std::string FindingJson(Finding const& finding);

} // namespace doctor
