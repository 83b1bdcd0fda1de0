#pragma once
#include "simulator/base/Moment.h"

#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// One line of the app's log.
struct LogLine
{
    Moment time = 0;
    std::wstring level; // without its brackets
    std::wstring product;
    std::wstring component;
    std::wstring category;
    std::wstring detail;
    std::wstring origin;
    std::wstring thread;
    std::wstring message;

    // 09:30:12.045 INFO  ZEBMain  Inside OnLaunched
    std::wstring Text() const;
};

// nullopt for text in any other format.
std::optional<LogLine> ParseLogLine(std::wstring_view text);

} // namespace sim
