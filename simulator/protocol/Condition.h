#pragma once
#include <cstdint>
#include <string_view>

namespace sim
{

// A state of the device, or a choice of its user, that restricts apps.
enum class Condition : std::uint32_t
{
    AccessDenied = 0,
    BatterySaver = 1,
    NetworkOff = 2,
    Last = NetworkOff
};

// Their names on the command line and in the journal.
struct ConditionWords
{
    std::wstring_view name;
    std::wstring_view holds;
    std::wstring_view ends;
    std::wstring_view holdsTasksBack; // the reason; empty when background tasks run
};

// By Condition.
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
