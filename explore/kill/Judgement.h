#pragma once
#include "explore/kill/LogText.h"

#include <map>
#include <string>
#include <vector>

namespace explore::kill
{

// What became of a play.
struct Facts
{
    std::vector<LogText> left; // by the first process, before the next one started
    std::vector<LogText> end;  // when the next one was through
    // How many lines of each of the first process's threads are written for sure: their calls have let the next line
    // in.
    std::map<std::uint32_t, unsigned> returned;
    std::vector<std::u16string> old;     // the lines that stood there before
    std::vector<std::u16string> allowed; // the messages of a process that nothing ends, but for its header
    std::vector<std::u16string> again;   // the same of the next one
    bool isLogAtLimit = false;           // when the next one started
    std::vector<std::string> troubles;   // "KIND: what", found meanwhile
    std::vector<std::string> tasks;      // names, at the end
    std::vector<std::string> tasksMeant;
};

struct Flaw
{
    std::string kind;
    std::string what;
    std::string rule = {}; // of the log, by which it is so (docs/log.md); empty: by none
};

struct Verdict
{
    std::string outcome; // the same for plays that went alike
    std::vector<Flaw> flaws;
};

Verdict Judge(Facts const& facts);

} // namespace explore::kill
