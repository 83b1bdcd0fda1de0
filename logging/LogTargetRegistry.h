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

// The targets of the process, by group. It does not own them: a target counts its registrations and stays alive as long
// as it has any. It is written during start-up only and read without a lock from then on.
class LogTargetRegistry
{
  public:
    using Targets = std::vector<LogTargetBase*>; // in the order of registration

    // Null when nothing was ever registered under the group.
    Targets const* Find(std::wstring_view group) const noexcept;

    // Files the target under its group and counts the registration; does nothing when it is already there. Throws
    // std::bad_alloc only.
    void Register(LogTargetBase& target);

  private:
    std::map<std::wstring, Targets, std::less<>> m_groups;
};

// The one registry of the process, made on first use.
LogTargetRegistry& GetLogTargetRegistry();

// Opens the process-wide default target and registers it; true when it is registered, also when it already was. False,
// and nothing registered, when there is no default target or it cannot be opened. Throws std::bad_alloc only.
bool RegisterDefaultTarget(LogTargetRegistry& registry);

// Hands a line to every target of the group with the time "now" and the lock between processes asked for. f1 to f4 are
// the columns reserved, product, component and category. Returns what the last target returned, 0 when there is none.
std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, char const* detail, char const* origin,
                       char const* format, va_list arguments) noexcept;
std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, wchar_t const* detail,
                       wchar_t const* origin, wchar_t const* format, va_list arguments) noexcept;

} // namespace zant
