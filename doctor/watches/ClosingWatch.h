#pragma once
#include "doctor/stories/Remark.h"

#include <vector>

namespace doctor
{

// A connection that is closed while a channel or a registration is waited for.
class ClosingWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::vector<LogPlace> m_waiting; // requests not yet answered, the oldest first
};

} // namespace doctor
