#pragma once
#include "simulator/platform/TimeSource.h"

namespace sim
{

class SystemTime : public TimeSource
{
  public:
    std::int64_t Utc() const override;
    std::uint64_t Ticks() const override;
};

} // namespace sim
