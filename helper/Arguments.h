#pragma once
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace helper
{

// What the helper is to do.
struct Arguments
{
    // Key and value of a request; values are text.
    using Entry = std::pair<std::wstring, std::wstring>;

    std::vector<Entry> request;            // empty: connect only
    std::wstring expectedMessage;          // the value of "NewMessage" that ends the wait; empty: the response ends it
    bool needsUri = false;                 // the expected message has to bring one
    bool watch = false;                    // stay connected until the app closes the connection
    unsigned timeoutMilliseconds = 90'000; // for the response, and once more for the message
};

// An invalid command line; what() is the sentence for its author.
class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// words: the command line without the program's name. Nothing: a call for help. Throws UsageError.
std::optional<Arguments> ParseArguments(std::vector<std::wstring> const& words);

// The commands, options and exit codes.
extern wchar_t const* const helpText;

} // namespace helper
