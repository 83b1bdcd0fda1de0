#pragma once
#include "utils/LogLevel.h"

#include <cstdarg>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zant
{

class LogTargetBase;

// The targets of the process, by group. Owns none of them: a target counts its registrations, and must outlive them.
// Written during start-up only; read without a lock.
class LogTargetRegistry
{
  public:
    using Targets = std::vector<LogTargetBase*>; // in the order of registration

    // Null when no target has been registered under the group.
    Targets const* Find(std::wstring_view group) const noexcept;

    // Adds the target to its group and counts the registration, unless it is in the group already. Throws
    // std::bad_alloc only.
    void Register(LogTargetBase& target);

  private:
    std::map<std::wstring, Targets, std::less<>> m_groups;
};

// The registry of the process, created on first use.
LogTargetRegistry& GetLogTargetRegistry();

// Opens the process-wide default target and registers it. True when it is registered, also if it was before. False, and
// nothing is registered, when there is no default target or it cannot be opened. Throws std::bad_alloc only.
bool RegisterDefaultTarget(LogTargetRegistry& registry);

// Passes a line to each target of the group, with the time "now" and the lock flag set. f1 to f4 are the columns
// reserved, product, component and category. Returns the result of the last target, 0 when there is none.
std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, char const* detail, char const* origin,
                       char const* format, va_list arguments) noexcept;
std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, wchar_t const* detail,
                       wchar_t const* origin, wchar_t const* format, va_list arguments) noexcept;

} // namespace zant
