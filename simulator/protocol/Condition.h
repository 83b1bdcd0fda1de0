#pragma once
#include <cstdint>
#include <string_view>

namespace sim
{

// What a device or its user may keep from apps.
enum class Condition : std::uint32_t
{
    AccessDenied = 0,
    BatterySaver = 1,
    NetworkOff = 2,
    Last = NetworkOff
};

// In their order, in the words of the command line and the journal.
struct ConditionWords
{
    std::wstring_view name;
    std::wstring_view holds;
    std::wstring_view ends;
    std::wstring_view holdsTasksBack; // why; empty: it does not
};

constexpr ConditionWords conditionWords[] = {
    {L"access", L"denied", L"allowed", L"background access is denied"},
    {L"battery", L"saver", L"normal", L"the battery saver is on"},
    {L"network", L"off", L"on", L""},
};

constexpr ConditionWords const& WordsFor(Condition condition) noexcept
{
    return conditionWords[static_cast<std::uint32_t>(condition)];
}

} // namespace sim
