#pragma once
#include "explore/log/Files.h"

#include <memory>
#include <string>
#include <vector>

namespace explore
{

enum class Act
{
    Start,
    Line,
    MakeCheckDue, // the next line checks the file's size
    FillLog,      // to the size from which it is rotated
    WaitSecond
};

struct Script
{
    std::vector<Act> before; // the processes meet
    std::vector<Act> during;
};

// What processes do at the same time, and with which files.
struct Story
{
    std::string name;
    std::vector<Script> processes;
    void (*prepare)(Files&) = nullptr; // before the first starts
    bool isAtLimit = false;            // where they meet, the log has the size from which it is rotated
    bool isShort = true;               // part of the share of ./dev test
    // Replaces calls of the system in memory for as long as the result lives: for the exploration's own tests.
    std::shared_ptr<void> (*spoil)() = nullptr;
};

std::vector<Story> const& Stories();

inline constexpr std::wstring_view logFolder = L"c:\\temp\\tessaline\\hov";
inline constexpr std::wstring_view logPath = L"c:\\temp\\tessaline\\hov\\kzeb.log";
inline constexpr std::string_view otherEncoding = "\xEF\xBB\xBFsome text in UTF-8\r\n";

} // namespace explore
