#pragma once
#include "explore/log/LogRecord.h"
#include "explore/log/Rule.h"

#include <string>
#include <vector>

namespace explore
{

struct Flaw
{
    std::string kind;
    std::string what;
    std::string rule = rule::none; // by which it is so
};

struct Verdict
{
    std::string outcome; // the same for plays that went alike
    std::vector<Flaw> flaws;
};

Verdict Judge(LogRecord const& record);

} // namespace explore
