#include "logging/LogTargetRegistry.h"

#include "logging/LogTargetDefault.h"

#include <algorithm>

namespace zant
{

namespace
{

template <typename Char>
std::uint64_t DispatchTo(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                         wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, Char const* detail,
                         Char const* origin, Char const* format, va_list arguments) noexcept
{
    auto const* const targets = group != nullptr ? registry.Find(group) : nullptr;
    if (targets == nullptr)
    {
        return 0;
    }
    constexpr std::uint64_t now = 0;
    std::uint64_t result = 0;
    for (auto* const target : *targets)
    {
        // Each target reads the arguments from the first one on: in the calling convention of Windows x64 a va_list is
        // a pointer, passed by value.
        result = target->Log(level, f1, f2, f3, f4, detail, origin, format, arguments, now, true);
    }
    return result;
}

} // namespace

LogTargetRegistry::Targets const* LogTargetRegistry::Find(std::wstring_view group) const noexcept
{
    auto const found = m_groups.find(group);
    return found != m_groups.end() ? &found->second : nullptr;
}

void LogTargetRegistry::Register(LogTargetBase& target)
{
    auto& targets = m_groups[target.group];
    if (std::ranges::find(targets, &target) == targets.end())
    {
        target.AddReference();
        targets.push_back(&target);
    }
}

LogTargetRegistry& GetLogTargetRegistry()
{
    static LogTargetRegistry registry;
    return registry;
}

bool RegisterDefaultTarget(LogTargetRegistry& registry)
{
    if (g_defaultLogTarget == nullptr || !g_defaultLogTarget->Open())
    {
        return false;
    }
    registry.Register(*g_defaultLogTarget);
    return true;
}

std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, char const* detail, char const* origin,
                       char const* format, va_list arguments) noexcept
{
    return DispatchTo(registry, group, level, f1, f2, f3, f4, detail, origin, format, arguments);
}

std::uint64_t Dispatch(LogTargetRegistry const& registry, wchar_t const* group, LogLevel level, wchar_t const* f1,
                       wchar_t const* f2, wchar_t const* f3, wchar_t const* f4, wchar_t const* detail,
                       wchar_t const* origin, wchar_t const* format, va_list arguments) noexcept
{
    return DispatchTo(registry, group, level, f1, f2, f3, f4, detail, origin, format, arguments);
}

} // namespace zant
