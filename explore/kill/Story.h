#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace explore::kill
{

enum class LogBefore
{
    None,
    Short,
    AtLimit
};

enum class Request
{
    Launch,  // by the user; the process ends by itself
    OpenUri, // the same
    Register // a helper asks to register the background tasks; the process stays
};

struct Story
{
    std::string_view name;
    LogBefore log;
    Request request;
    std::vector<std::u16string_view> closing = {}; // what a process that stays has written when the request is through
};

std::vector<Story> const& Stories();

// A log that stands there before a story.
struct OldLog
{
    std::string begin = {}; // the file's first bytes
    std::string end = {};   // its last ones
    std::uint64_t size = 0;
    std::vector<std::u16string> lines = {};
};

OldLog OldLogOf(LogBefore log);

} // namespace explore::kill
