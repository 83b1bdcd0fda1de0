#pragma once
#include "helper/Arguments.h"

namespace helper
{

// The program's exit code.
enum class Outcome
{
    Done = 0,
    NotDone = 1, // the client said so
    UsageError = 2,
    NoConnection = 3,
    NoAnswer = 4
};

// Connects, sends the request and waits for the client's message. Throws hresult_error.
Outcome Run(Arguments const& arguments);

} // namespace helper
