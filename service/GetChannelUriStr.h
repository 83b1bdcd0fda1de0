#pragma once
#include "service/RequestDeferral.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace VelmoNotificationClient
{

// Requests the push channel, stores its URI, and sends it to the helper with the present content of outgoingMessage.
// Returns at once; the rest runs on other threads. The request's deferral is completed once at the end of the chain and
// once for each message sent, in the order in which these end. Throws hresult_error when the channel request fails at
// once: then nothing is sent or completed.
void GetChannelUriStr(winrt::Windows::Foundation::Collections::ValueSet const& outgoingMessage,
                      RequestDeferral const& requestDeferral);

} // namespace VelmoNotificationClient
