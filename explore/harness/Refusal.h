#pragma once
#include "explore/harness/PlayId.h"

#include <string>
#include <string_view>
#include <vector>

namespace explore
{

// Why an exploration does not do what it is asked for, each a sentence that says what can be.

// `kind`: what a play is of: "story", "flow".
std::string NoStory(std::string_view kind, std::string const& name, std::vector<std::string> const& names);
// A play that has so many steps does not come to the deviation.
std::string NoStep(Deviation const& deviation, std::size_t steps);
// That step has a deviation already.
std::string NoSecond(Deviation const& deviation);
// At that step there are these choices alone.
std::string NoChoice(Deviation const& deviation, std::vector<std::string> const& choices);

// Says why on standard error. Returns the exit code, that of all wrong arguments.
int Refuse(std::string_view subject, std::string const& why);

} // namespace explore
