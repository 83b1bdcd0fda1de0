#pragma once
#include "doctor/stories/Remark.h"

#include <optional>

namespace doctor
{

// A connection that is opened while another one is.
class ConnectionWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::optional<LogPlace> m_open;
};

} // namespace doctor
