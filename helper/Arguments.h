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

// A call that makes no sense; what() is for the person who made it.
class WrongCall : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// words: those of the command line after the program's name. Nothing: the person asks for help. Throws WrongCall.
std::optional<Arguments> ParseArguments(std::vector<std::wstring> const& words);

// How the helper is called, and its exit codes.
extern wchar_t const* const helpText;

} // namespace helper
