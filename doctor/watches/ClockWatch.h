#pragma once
#include "doctor/stories/Remark.h"

#include <optional>

namespace doctor
{

// A clock that is set back.
class ClockWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::optional<LogPlace> m_latest;
};

} // namespace doctor
