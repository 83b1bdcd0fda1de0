#pragma once
#include "doctor/stories/Remark.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace doctor
{

// A day without a push behind another channel URI, where pushes had come before.
class PushWatch
{
  public:
    static constexpr std::chrono::hours patience{24};

    void Add(LogPlace const& place, std::string_view message);
    void End(TakeRemark const& take);

  private:
    std::size_t m_uri = 0; // its hash; 0: none yet
    bool m_hadPush = false;
    std::optional<LogPlace> m_changed; // since then no push
    LogPlace m_last;
};

} // namespace doctor
