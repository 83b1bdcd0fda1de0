#pragma once
#include "doctor/log/ReadLog.h"

#include <filesystem>
#include <string>

namespace doctor
{

enum class Form
{
    Text,     // 2024-01-05 09:30:12.045 INFO  4660 ZEBMain    Inside OnLaunched
    Coloured, // the same for a terminal
    Json      // one object a line
};

struct LineFormat
{
    Form form = Form::Text;
    bool hasFullUris = false;
};

// An entry as it is shown, without a line end. Control characters are shown as U+FFFD: a log could move a terminal's
// cursor with them.
std::string FormatEntry(Entry const& entry, std::filesystem::path const& file, LineFormat const& format);

} // namespace doctor
