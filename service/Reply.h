#pragma once
#include "service/RequestDeferral.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace VelmoNotificationClient
{

// What is logged around the completion of a request's deferral; null for no line.
struct CompletionLines
{
    wchar_t const* before;
    wchar_t const* after;
};

struct ReplyLines
{
    CompletionLines sent;    // at INFO, when the send has completed, whatever came of it
    CompletionLines notSent; // at ERROR, when it could not be started
};

// Says in a message to the helper which one it is. value: one of the values of the key "NewMessage".
void SetNewMessage(winrt::Windows::Foundation::Collections::ValueSet const& message, wchar_t const* value);

// Sends a message to the helper on the connection as it stands at this moment, and completes the request: when the send
// has completed, never on the calling thread, or at once when it cannot be started, also since there is no
// connection any more. The message may be changed afterwards. lines: texts that live for ever. Throws hresult_error
// when the request cannot be completed at once; when it cannot be completed later, the process ends.
void SendReply(winrt::Windows::Foundation::Collections::ValueSet const& message, RequestDeferral const& requestDeferral,
               ReplyLines const& lines);

} // namespace VelmoNotificationClient
