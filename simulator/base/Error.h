#pragma once
#include <exception>
#include <string>
#include <utility>

namespace sim
{

// A failure to be read by a person: what is wrong and, where it is not plain, what to do about it.
class Error : public std::exception
{
  public:
    explicit Error(std::wstring message) : m_message(std::move(message)) {}

    std::wstring const& Message() const noexcept { return m_message; }

  private:
    std::wstring m_message;
};

} // namespace sim
