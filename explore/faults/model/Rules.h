#pragma once
#include "explore/faults/model/Step.h"

namespace explore::faults
{

// What the app must do, written down from the rules alone.

// The app object is constructed.
Steps StartUp();

// OnLaunched, OnActivated, OnBackgroundActivated.
Steps UserLaunch();
Steps ProtocolLaunch();
Steps BackgroundActivation();

// The events of a connection.
Steps ConnectionClosed();
Steps TaskCancelled();

// A request with that command; one that is unknown for any other.
Steps RequestReceived(std::wstring_view command);

} // namespace explore::faults
