#pragma once
#include "helper/Arguments.h"

namespace helper
{

// What the program's exit code says.
enum class Outcome
{
    Done = 0,
    NotDone = 1, // the client said so
    WrongCall = 2,
    NoConnection = 3,
    NoAnswer = 4
};

// Connects, asks, waits for what the client has to say. Throws hresult_error.
Outcome Run(Arguments const& arguments);

} // namespace helper
