#pragma once
#include "doctor/verdict/Finding.h"

#include <cstddef>
#include <string>

namespace doctor
{

// Cause and advice for people, each in a line of its own behind a line feed and so many blanks; nothing without them.
std::string AdviceText(Finding const& finding, std::size_t margin);

// A finding of the machine for people, in UTF-8: a line with result, stage and sentence, then cause and advice if it
// has them. Without a line end.
std::string FindingText(Finding const& finding);

// The same as a JSON object in one line.
std::string FindingJson(Finding const& finding);

} // namespace doctor
