#pragma once
#include "simulator/protocol/CancellationReason.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace sim
{

// A state of the device, or a choice of its user, that restricts apps.
enum class Condition : std::uint32_t
{
    AccessDenied = 0,
    BatterySaver = 1,
    NetworkOff = 2,
    LoggedOff = 3,
    Asleep = 4,
    Last = Asleep
};

struct ConditionTraits
{
    // In the words of the command line and the journal; what it is, for people.
    std::wstring_view name;
    std::wstring_view holds;
    std::wstring_view ends;
    std::wstring_view text;

    bool stopsTheApp; // its tasks end, and nothing comes to it meanwhile
    bool holdsTasksBack;
    std::wstring_view losesPushes;        // the reason in the journal; empty: it does not
    std::optional<std::uint32_t> cancels; // the reason for which running tasks are cancelled when it begins
};

// By Condition.
constexpr ConditionTraits conditionTraits[] = {
    {L"access", L"denied", L"allowed", L"background access is denied", false, true, L"", {}},
    {L"battery", L"saver", L"normal", L"the battery saver is on", false, true, L"", CancellationReason::energySaver},
    {L"network", L"off", L"on", L"the device has no network", false, false, L"no-network", {}},
    {L"session", L"logged-off", L"logged-on", L"nobody is logged on", true, true, L"logged-off",
     CancellationReason::loggingOff},
    {L"power", L"asleep", L"awake", L"the device is asleep", true, true, L"asleep", CancellationReason::systemPolicy},
};

constexpr ConditionTraits const& TraitsOf(Condition condition) noexcept
{
    return conditionTraits[static_cast<std::uint32_t>(condition)];
}

} // namespace sim
