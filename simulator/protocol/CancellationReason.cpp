#include "simulator/protocol/CancellationReason.h"

#include "simulator/base/Text.h"

#include <algorithm>
#include <array>

namespace sim::CancellationReason
{

namespace
{

constexpr std::array<std::wstring_view, 12> names = {L"Abort",
                                                     L"Terminating",
                                                     L"LoggingOff",
                                                     L"ServicingUpdate",
                                                     L"IdleTask",
                                                     L"Uninstall",
                                                     L"ConditionLoss",
                                                     L"SystemPolicy",
                                                     L"QuietHoursEntered",
                                                     L"ExecutionTimeExceeded",
                                                     L"ResourceRevocation",
                                                     L"EnergySaver"};

} // namespace

std::wstring NameOf(std::uint32_t reason)
{
    auto const index = static_cast<std::size_t>(reason);
    return index < names.size() ? std::wstring(names[index]) : std::to_wstring(reason);
}

std::optional<std::uint32_t> Parse(std::wstring_view name)
{
    auto const* const found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<std::uint32_t>(found - names.begin()));
}

std::wstring Names()
{
    return Listed(names, L" ");
}

} // namespace sim::CancellationReason
