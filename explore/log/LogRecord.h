#pragma once
#include "explore/log/Files.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace explore
{

// A line that is to be found afterwards.
struct LineRecord
{
    std::wstring message;
    bool isAcknowledged = false; // the call has returned
    bool isWithoutRoom = false;  // a write to the log did not fit meanwhile
    bool isOld = false;          // no process has written it: without fields
};

// Lines that stood in a file when something happened, after which they may by a rule be missing or stand there twice.
struct Excused
{
    char const* rule;
    std::vector<std::wstring> lines; // as they stood there
};

// What a play has come to.
struct LogRecord
{
    Files const& files;
    std::vector<LineRecord> lines = {};
    std::vector<std::string> troubles = {};              // found meanwhile: a handle left open, a silent process
    std::string otherText = {};                          // what stood in the log in another encoding
    std::map<std::wstring, std::string> otherFiles = {}; // what stood elsewhere, by path
    std::vector<Excused> missing = {};                   // taken by a rule
    std::vector<std::wstring> cleanedUp = {};            // stood in a copy that is not to be kept
    std::vector<Excused> doubled = {};                   // left in the log and in a copy by a rule
    std::set<std::wstring> cut = {};                     // the files to which a write did not fit, in lower case
    unsigned rotations = 0;                              // how often the log was emptied
};

} // namespace explore
