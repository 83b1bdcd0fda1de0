#pragma once
#include "explore/faults/Flow.h"

#include <string_view>

namespace test
{

// Flows of which nobody plays the app's part.
explore::faults::Flow StartUpFlow();
explore::faults::Flow LaunchFlow();
explore::faults::Flow PushFlow();
explore::faults::Flow RequestFlow(std::wstring_view command);
explore::faults::Flow TwoRequestsFlow(std::wstring_view first, std::wstring_view second);
explore::faults::Flow CloseFlow();
explore::faults::Flow CancelFlow();

// What the rules say of it.
explore::faults::Outcome Reckoned(explore::faults::Flow const& flow,
                                  std::vector<explore::faults::WayAt> const& deviations = {});

// The number of the n-th call of that name, counted from 1.
std::size_t NumberOf(explore::faults::Flow const& flow, std::wstring_view call, std::size_t n = 1);

} // namespace test
