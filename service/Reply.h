#pragma once
#include "service/RequestDeferral.h"

#include <winrt/Windows.Foundation.Collections.h>

namespace VelmoNotificationClient
{

// The log lines around the completion of a request's deferral; null for none.
struct CompletionLines
{
    wchar_t const* before;
    wchar_t const* after;
};

struct ReplyLines
{
    CompletionLines sent;    // at INFO, when the send has completed, whatever its status
    CompletionLines notSent; // at ERROR, when the send cannot be started
};

// Sets the key "NewMessage", which identifies a message to the helper. value: one of the values of that key.
void SetNewMessage(winrt::Windows::Foundation::Collections::ValueSet const& message, wchar_t const* value);

// Sends a message to the helper on the active connection, and completes the request: when the send has completed, never
// on the calling thread, or at once when the send cannot be started, for example without an active connection. The
// message may be changed afterwards. lines: literals. Throws hresult_error when the request cannot be completed at
// once; when it cannot be completed later, the process ends.
void SendReply(winrt::Windows::Foundation::Collections::ValueSet const& message, RequestDeferral const& requestDeferral,
               ReplyLines const& lines);

} // namespace VelmoNotificationClient
