#pragma once
#include <chrono>
#include <optional>
#include <string>
#include <winrt/Windows.ApplicationModel.AppService.h>

namespace helper
{

// A failure in three parts, each without a full stop.
struct Failure
{
    std::wstring what;   // "the package is not installed"
    std::wstring advice; // "install it"
    std::wstring code;   // the platform's name and number: "AppServiceConnectionStatus.AppNotInstalled, 1"
};

// status: of an attempt to connect, or of a request, that was not a success. error: of a call that the platform
// refused.
Failure Explain(winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus status);
Failure Explain(winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus status);
Failure Explain(winrt::hresult_error const& error);

// Sentences for the console: what happened; what to do; in parentheses the platform's name and number, to look it up.

// status: of an attempt to connect that was not a success.
std::wstring FailureText(winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus status);

// status: of a request that was not a success.
std::wstring FailureText(winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus status);

// error: of a call that the platform refused. A code without a sentence of its own gets the error's message.
std::wstring FailureText(winrt::hresult_error const& error);

// The request was not completed in time.
std::wstring NoAnswerText(std::chrono::milliseconds waited);

// The request was completed, but no message came: in time, or before the connection closed with that status.
std::wstring NoMessageText(std::chrono::milliseconds waited, std::optional<std::wstring> const& closed);

} // namespace helper
