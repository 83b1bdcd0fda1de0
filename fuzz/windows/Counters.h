#pragma once

namespace fuzz
{

// What the compiler counts in the code that is fuzzed.
void ClearCounters() noexcept;

// True when a place was reached for the first time since the start, or clearly more often than before.
bool TakeNews();

} // namespace fuzz
