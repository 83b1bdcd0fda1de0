#pragma once
#include <stdexcept>

namespace doctor
{

// A failure, with a message in UTF-8 for people: what is wrong and, unless it is obvious, what to do about it.
class Error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

} // namespace doctor
