#pragma once
#include "doctor/stories/Remark.h"

#include <optional>
#include <utility>

namespace doctor
{

// Two registrations of one task without a removal between them. That lasts until a removal, whatever works meanwhile.
class RegistrationWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);
    void End(TakeRemark const& take);

  private:
    struct Task
    {
        std::optional<LogPlace> registered{};
        std::optional<std::pair<LogPlace, LogPlace>> twice{};
    };

    Task m_push;
    Task m_timer;
};

} // namespace doctor
