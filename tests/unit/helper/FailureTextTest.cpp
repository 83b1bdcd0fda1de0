#include "helper/FailureText.h"

#include <gtest/gtest.h>
#include <windows.h>

using helper::FailureText;
using winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;
using namespace std::chrono_literals;

namespace
{

std::wstring OfResult(std::uint32_t code)
{
    return FailureText(winrt::hresult_error(static_cast<std::int32_t>(code)));
}

} // namespace

TEST(FailureText, ComesInItsParts)
{
    auto const failure = helper::Explain(AppServiceConnectionStatus::AppUnavailable);
    EXPECT_EQ(failure.what, L"the app does not start, or is being updated");
    EXPECT_EQ(failure.advice, L"try again later, and look for its crash in the event log (simulator: sim events)");
    EXPECT_EQ(failure.code, L"AppServiceConnectionStatus.AppUnavailable, 2");
    EXPECT_EQ(helper::Explain(AppServiceResponseStatus::Failure).code, L"AppServiceResponseStatus.Failure, 1");
    EXPECT_EQ(helper::Explain(static_cast<AppServiceConnectionStatus>(99)).advice,
              L"look it up in the platform's documentation");
    EXPECT_EQ(helper::Explain(winrt::hresult_error(static_cast<std::int32_t>(0x80000013))).code,
              L"RO_E_CLOSED, 0x80000013");
}

TEST(FailureText, OfAConnectionSaysWhatHappenedWhatToDoAndTheStatus)
{
    using enum AppServiceConnectionStatus;
    EXPECT_EQ(FailureText(AppNotInstalled),
              L"no connection: the package is not installed; install it (simulator: sim register) "
              L"(AppServiceConnectionStatus.AppNotInstalled, 1)");
    EXPECT_EQ(FailureText(AppUnavailable),
              L"no connection: the app does not start, or is being updated; try again later, and look for its crash in "
              L"the event log (simulator: sim events) (AppServiceConnectionStatus.AppUnavailable, 2)");
    EXPECT_EQ(FailureText(AppServiceUnavailable),
              L"no connection: the installed package has no such app service; install the version that this helper was "
              L"built with (AppServiceConnectionStatus.AppServiceUnavailable, 3)");
    EXPECT_EQ(
        FailureText(Unknown),
        L"no connection: the platform gives no reason; run the helper without elevation, and look in the platform's event log "
        L"(AppServiceConnectionStatus.Unknown, 4)");
    EXPECT_EQ(FailureText(RemoteSystemUnavailable),
              L"no connection: the device that runs the app cannot be reached; run the helper on that device "
              L"(AppServiceConnectionStatus.RemoteSystemUnavailable, 5)");
    EXPECT_EQ(FailureText(RemoteSystemNotSupportedByApp),
              L"no connection: the app does not serve other devices; run the helper on the app's device "
              L"(AppServiceConnectionStatus.RemoteSystemNotSupportedByApp, 6)");
    EXPECT_EQ(FailureText(NotAuthorized),
              L"no connection: this program may not use the app service; run it inside the package (docs/windows.md) "
              L"(AppServiceConnectionStatus.NotAuthorized, 7)");
    EXPECT_EQ(FailureText(AuthenticationError), L"no connection: the user's account is not verified; sign in again "
                                                L"(AppServiceConnectionStatus.AuthenticationError, 8)");
    EXPECT_EQ(FailureText(NetworkNotAvailable), L"no connection: there is no network; connect the device and try again "
                                                L"(AppServiceConnectionStatus.NetworkNotAvailable, 9)");
    EXPECT_EQ(FailureText(DisabledByPolicy), L"no connection: a policy forbids it; ask the administrator of the device "
                                             L"(AppServiceConnectionStatus.DisabledByPolicy, 10)");
    EXPECT_EQ(FailureText(WebServiceUnavailable),
              L"no connection: a cloud service of the platform does not answer; try again later "
              L"(AppServiceConnectionStatus.WebServiceUnavailable, 11)");
}

TEST(FailureText, OfARequestSaysWhatHappenedWhatToDoAndTheStatus)
{
    using enum AppServiceResponseStatus;
    EXPECT_EQ(FailureText(Failure),
              L"no answer: the app ended, or the connection closed, before the request was completed; KZEB.log shows "
              L"the last step, the event log a crash (simulator: sim log, sim events); try again "
              L"(AppServiceResponseStatus.Failure, 1)");
    EXPECT_EQ(FailureText(ResourceLimitsExceeded),
              L"no answer: the platform ended the app, which used more than a background task may; try again "
              L"(AppServiceResponseStatus.ResourceLimitsExceeded, 2)");
    EXPECT_EQ(
        FailureText(Unknown),
        L"no answer: the platform gives no reason; run the helper without elevation, and look in the platform's event log "
        L"(AppServiceResponseStatus.Unknown, 3)");
    EXPECT_EQ(FailureText(RemoteSystemUnavailable),
              L"no answer: the device that runs the app cannot be reached; run the helper on that device "
              L"(AppServiceResponseStatus.RemoteSystemUnavailable, 4)");
    EXPECT_EQ(FailureText(MessageSizeTooLarge), L"no answer: the request is too large; send less text "
                                                L"(AppServiceResponseStatus.MessageSizeTooLarge, 5)");
    EXPECT_EQ(FailureText(AppUnavailable),
              L"no answer: the app does not start, or is being updated; try again later, and look for its crash in "
              L"the event log (simulator: sim events) (AppServiceResponseStatus.AppUnavailable, 6)");
    EXPECT_EQ(FailureText(AuthenticationError), L"no answer: the user's account is not verified; sign in again "
                                                L"(AppServiceResponseStatus.AuthenticationError, 7)");
    EXPECT_EQ(FailureText(NetworkNotAvailable), L"no answer: there is no network; connect the device and try again "
                                                L"(AppServiceResponseStatus.NetworkNotAvailable, 8)");
    EXPECT_EQ(FailureText(DisabledByPolicy), L"no answer: a policy forbids it; ask the administrator of the device "
                                             L"(AppServiceResponseStatus.DisabledByPolicy, 9)");
    EXPECT_EQ(FailureText(WebServiceUnavailable),
              L"no answer: a cloud service of the platform does not answer; try again later "
              L"(AppServiceResponseStatus.WebServiceUnavailable, 10)");
}

TEST(FailureText, OfAStatusThatIsNotKnownSaysSo)
{
    EXPECT_EQ(FailureText(static_cast<AppServiceConnectionStatus>(99)),
              L"no connection: the platform answers with a status that this helper does not know; look it up in the "
              L"platform's documentation (AppServiceConnectionStatus, 99)");
    EXPECT_EQ(FailureText(static_cast<AppServiceResponseStatus>(11)),
              L"no answer: the platform answers with a status that this helper does not know; look it up in the "
              L"platform's documentation (AppServiceResponseStatus, 11)");
}

TEST(FailureText, OfAFailedCallSaysWhatHappenedWhatToDoAndTheResult)
{
    EXPECT_EQ(OfResult(0x80040154), L"this system has no app services; Windows has them from 10.0.14393 on (Wine: sim "
                                    L"install registers them) (REGDB_E_CLASSNOTREG, 0x80040154)");
    EXPECT_EQ(OfResult(0x80073D54),
              L"this program has no package; run it inside the package (docs/windows.md). On the simulator "
              L"VELMO_SIM_HOME names the device's folder (APPMODEL_ERROR_NO_PACKAGE, 0x80073D54)");
    EXPECT_EQ(OfResult(0x80070490), L"the platform finds no package for this program; run it inside the package "
                                    L"(docs/windows.md) (ERROR_NOT_FOUND, 0x80070490)");
    EXPECT_EQ(OfResult(0x80070005), L"access is denied; run the helper as the user who runs the app, without elevation "
                                    L"(docs/windows.md) (E_ACCESSDENIED, 0x80070005)");
    EXPECT_EQ(OfResult(0x80000013), L"the connection closed before the call; try again (RO_E_CLOSED, 0x80000013)");
    EXPECT_EQ(OfResult(0x8000000E), L"the connection is not open; try again (E_ILLEGAL_METHOD_CALL, 0x8000000E)");
    EXPECT_EQ(OfResult(0x800706BA),
              L"the platform's service does not run; try again, and restart the device if it happens again "
              L"(simulator: sim status starts it) (RPC_S_SERVER_UNAVAILABLE, 0x800706BA)");
    EXPECT_EQ(OfResult(0x800706BE),
              L"the platform's service does not run; try again, and restart the device if it happens again "
              L"(simulator: sim status starts it) (RPC_S_CALL_FAILED, 0x800706BE)");
    EXPECT_EQ(OfResult(0x80010108),
              L"the platform's service does not run; try again, and restart the device if it happens again "
              L"(simulator: sim status starts it) (RPC_E_DISCONNECTED, 0x80010108)");
    EXPECT_EQ(OfResult(0x800704C7), L"the platform cancelled the call; try again (ERROR_CANCELLED, 0x800704C7)");
}

TEST(FailureText, OfAResultThatIsNotKnownIsThePlatformsMessage)
{
    EXPECT_EQ(FailureText(winrt::hresult_error(E_FAIL, L"the reason")),
              L"the platform refuses the call: the reason; look the code up in the platform's documentation "
              L"(0x80004005)");
    EXPECT_EQ(OfResult(0xA0000001), L"the platform refuses the call; look the code up in the platform's documentation "
                                    L"(0xA0000001)");
}

TEST(FailureText, OfAnAnswerThatDoesNotComeInTimeNamesTheLimit)
{
    EXPECT_EQ(helper::NoAnswerText(90s), L"no answer: the app did not complete the request within 90 s; KZEB.log shows "
                                         L"its last step, --timeout waits longer");
}

TEST(FailureText, OfAMessageThatDoesNotComeNamesTheLimitOrTheEndOfTheConnection)
{
    EXPECT_EQ(helper::NoMessageText(5s, std::nullopt),
              L"no message: the app completed the request, but sent none within 5 s; KZEB.log shows its last step, "
              L"--timeout waits longer");
    EXPECT_EQ(helper::NoMessageText(5s, L"Canceled"), L"no message: the connection closed before one came; try again "
                                                      L"(AppServiceClosedStatus.Canceled)");
}
