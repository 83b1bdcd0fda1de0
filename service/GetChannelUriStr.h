#pragma once
#include "service/RequestDeferral.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace VelmoNotificationClient
{

// Gets the push channel, stores its URI, and sends it to the helper with what outgoingMessage holds already. Returns at
// once; the rest happens on other threads. The request's deferral is completed once at the end of the chain and once
// more for each message sent, in whichever order these end. Throws hresult_error when the channel request fails at
// once: then nothing was sent and nothing completed.
void GetChannelUriStr(winrt::Windows::Foundation::Collections::ValueSet const& outgoingMessage,
                      RequestDeferral const& requestDeferral);

} // namespace VelmoNotificationClient
