#pragma once
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace sim
{

// A failure, with a message for people: what is wrong and, unless it is obvious, what to do about it.
class Error : public std::exception
{
  public:
    explicit Error(std::wstring message) : m_message(std::move(message)) {}

    std::wstring const& Message() const noexcept { return m_message; }

  private:
    std::wstring m_message;
};

// The message of any exception.
inline std::wstring ReasonOf(std::exception const& error)
{
    auto const* const own = dynamic_cast<Error const*>(&error);
    std::string_view const what = error.what();
    return own ? own->Message() : std::wstring(what.begin(), what.end());
}

} // namespace sim
