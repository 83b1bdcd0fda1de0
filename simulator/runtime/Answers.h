#pragma once
#include "simulator/transport/Message.h"

#include <cstdint>

namespace sim
{

// What the platform answers, as simulator/services/Services.h tells it.

// The answer itself; throws hresult_error for one that says "error".
Message Answered(Message answer);

// The result code, or the status, that it begins with: VERB NUMBER…
std::int32_t NumberIn(Message const& answer);

// One of the words after the verb, from 1 on; empty when it is not there.
std::wstring WordOf(Message const& answer, std::size_t position);

// Asks the platform and waits. Throws hresult_error as Answered does, and for a failing result code.
Message AskForResult(Message const& request);

} // namespace sim
