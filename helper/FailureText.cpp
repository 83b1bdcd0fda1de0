#include "helper/FailureText.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <string_view>

using winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;

namespace helper
{

namespace
{

template <typename Code>
struct Meaning
{
    Code code;
    wchar_t const* name;
    wchar_t const* text; // "WHAT; ADVICE"
};

// Statuses that both enumerations have.
constexpr wchar_t appUnavailable[] = L"the app does not start, or is being updated; try again later, and look for its "
                                     L"crash in the event log (simulator: sim events)";
constexpr wchar_t remoteSystemUnavailable[] =
    L"the device that runs the app cannot be reached; run the helper on that device";
constexpr wchar_t authenticationError[] = L"the user's account is not verified; sign in again";
constexpr wchar_t networkNotAvailable[] = L"there is no network; connect the device and try again";
constexpr wchar_t disabledByPolicy[] = L"a policy forbids it; ask the administrator of the device";
constexpr wchar_t webServiceUnavailable[] = L"a cloud service of the platform does not answer; try again later";
constexpr wchar_t unknown[] =
    L"the platform gives no reason; run the helper without elevation, and look in the platform's event log";

constexpr Meaning<AppServiceConnectionStatus> connectionStatuses[] = {
    {AppServiceConnectionStatus::AppNotInstalled, L"AppNotInstalled",
     L"the package is not installed; install it (simulator: sim register)"},
    {AppServiceConnectionStatus::AppUnavailable, L"AppUnavailable", appUnavailable},
    {AppServiceConnectionStatus::AppServiceUnavailable, L"AppServiceUnavailable",
     L"the installed package has no such app service; install the version that this helper was built with"},
    {AppServiceConnectionStatus::Unknown, L"Unknown", unknown},
    {AppServiceConnectionStatus::RemoteSystemUnavailable, L"RemoteSystemUnavailable", remoteSystemUnavailable},
    {AppServiceConnectionStatus::RemoteSystemNotSupportedByApp, L"RemoteSystemNotSupportedByApp",
     L"the app does not serve other devices; run the helper on the app's device"},
    {AppServiceConnectionStatus::NotAuthorized, L"NotAuthorized",
     L"this program may not use the app service; run it inside the package (docs/windows.md)"},
    {AppServiceConnectionStatus::AuthenticationError, L"AuthenticationError", authenticationError},
    {AppServiceConnectionStatus::NetworkNotAvailable, L"NetworkNotAvailable", networkNotAvailable},
    {AppServiceConnectionStatus::DisabledByPolicy, L"DisabledByPolicy", disabledByPolicy},
    {AppServiceConnectionStatus::WebServiceUnavailable, L"WebServiceUnavailable", webServiceUnavailable},
};

constexpr Meaning<AppServiceResponseStatus> responseStatuses[] = {
    {AppServiceResponseStatus::Failure, L"Failure",
     L"the app ended, or the connection closed, before the request was completed; KZEB.log shows the last step, the "
     L"event log a crash (simulator: sim log, sim events); try again"},
    {AppServiceResponseStatus::ResourceLimitsExceeded, L"ResourceLimitsExceeded",
     L"the platform ended the app, which used more than a background task may; try again"},
    {AppServiceResponseStatus::Unknown, L"Unknown", unknown},
    {AppServiceResponseStatus::RemoteSystemUnavailable, L"RemoteSystemUnavailable", remoteSystemUnavailable},
    {AppServiceResponseStatus::MessageSizeTooLarge, L"MessageSizeTooLarge",
     L"the request is too large; send less text"},
    {AppServiceResponseStatus::AppUnavailable, L"AppUnavailable", appUnavailable},
    {AppServiceResponseStatus::AuthenticationError, L"AuthenticationError", authenticationError},
    {AppServiceResponseStatus::NetworkNotAvailable, L"NetworkNotAvailable", networkNotAvailable},
    {AppServiceResponseStatus::DisabledByPolicy, L"DisabledByPolicy", disabledByPolicy},
    {AppServiceResponseStatus::WebServiceUnavailable, L"WebServiceUnavailable", webServiceUnavailable},
};

constexpr wchar_t platformEnded[] = L"the platform's service does not run; try again, and restart the device if it "
                                    L"happens again (simulator: sim status starts it)";

constexpr Meaning<std::uint32_t> results[] = {
    {0x80040154, L"REGDB_E_CLASSNOTREG",
     L"this system has no app services; Windows has them from 10.0.14393 on (Wine: sim install registers them)"},
    {0x80073D54, L"APPMODEL_ERROR_NO_PACKAGE",
     L"this program has no package; run it inside the package (docs/windows.md). On the simulator VELMO_SIM_HOME names "
     L"the device's folder"},
    {0x80070490, L"ERROR_NOT_FOUND",
     L"the platform finds no package for this program; run it inside the package (docs/windows.md)"},
    {0x80070005, L"E_ACCESSDENIED",
     L"access is denied; run the helper as the user who runs the app, without elevation (docs/windows.md)"},
    {0x80000013, L"RO_E_CLOSED", L"the connection closed before the call; try again"},
    {0x8000000E, L"E_ILLEGAL_METHOD_CALL", L"the connection is not open; try again"},
    {0x800706BA, L"RPC_S_SERVER_UNAVAILABLE", platformEnded},
    {0x800706BE, L"RPC_S_CALL_FAILED", platformEnded},
    {0x80010108, L"RPC_E_DISCONNECTED", platformEnded},
    {0x800704C7, L"ERROR_CANCELLED", L"the platform cancelled the call; try again"},
};

template <typename Code, std::size_t Count>
Meaning<Code> const* Find(Meaning<Code> const (&meanings)[Count], Code code)
{
    auto const* const found = std::ranges::find(meanings, code, &Meaning<Code>::code);
    return found == std::end(meanings) ? nullptr : found;
}

std::wstring Hexadecimal(std::uint32_t code)
{
    wchar_t text[11];
    static_cast<void>(std::swprintf(text, std::size(text), L"0x%08X", static_cast<unsigned>(code)));
    return text;
}

template <typename Code>
Failure Explained(Meaning<Code> const& meaning, std::wstring const& code)
{
    std::wstring_view const text = meaning.text;
    auto const end = text.find(L"; ");
    return {std::wstring(text.substr(0, end)), std::wstring(text.substr(end + 2)), code};
}

template <typename Status, std::size_t Count>
Failure Explained(Meaning<Status> const (&meanings)[Count], std::wstring const& enumeration, Status status)
{
    auto const number = L", " + std::to_wstring(static_cast<std::int32_t>(status));
    if (auto const* const meaning = Find(meanings, status))
    {
        return Explained(*meaning, enumeration + L"." + meaning->name + number);
    }
    return {L"the platform answers with a status that this helper does not know",
            L"look it up in the platform's documentation", enumeration + number};
}

std::wstring Text(Failure const& failure)
{
    return failure.what + L"; " + failure.advice + L" (" + failure.code + L")";
}

std::wstring Seconds(std::chrono::milliseconds time)
{
    return std::to_wstring(std::chrono::duration_cast<std::chrono::seconds>(time).count()) + L" s";
}

} // namespace

Failure Explain(AppServiceConnectionStatus status)
{
    return Explained(connectionStatuses, L"AppServiceConnectionStatus", status);
}

Failure Explain(AppServiceResponseStatus status)
{
    return Explained(responseStatuses, L"AppServiceResponseStatus", status);
}

Failure Explain(winrt::hresult_error const& error)
{
    auto const code = static_cast<std::uint32_t>(error.code());
    if (auto const* const meaning = Find(results, code))
    {
        return Explained(*meaning, std::wstring(meaning->name) + L", " + Hexadecimal(code));
    }
    auto const message = std::wstring(error.message());
    return {L"the platform refuses the call" + (message.empty() ? L"" : L": " + message),
            L"look the code up in the platform's documentation", Hexadecimal(code)};
}

std::wstring FailureText(AppServiceConnectionStatus status)
{
    return L"no connection: " + Text(Explain(status));
}

std::wstring FailureText(AppServiceResponseStatus status)
{
    return L"no answer: " + Text(Explain(status));
}

std::wstring FailureText(winrt::hresult_error const& error)
{
    return Text(Explain(error));
}

std::wstring NoAnswerText(std::chrono::milliseconds waited)
{
    return L"no answer: the app did not complete the request within " + Seconds(waited) +
           L"; KZEB.log shows its last step, --timeout waits longer";
}

std::wstring NoMessageText(std::chrono::milliseconds waited, std::optional<std::wstring> const& closed)
{
    if (closed)
    {
        return L"no message: the connection closed before one came; try again (AppServiceClosedStatus." + *closed +
               L")";
    }
    return L"no message: the app completed the request, but sent none within " + Seconds(waited) +
           L"; KZEB.log shows its last step, --timeout waits longer";
}

} // namespace helper
