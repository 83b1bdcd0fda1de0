#include "tests/flow/ServiceFlow.h"

#include <optional>

namespace
{

using test::Error;
using test::ExpectLines;
using test::Info;
using test::Lines;
using test::RequestLines;
using winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;

constexpr wchar_t uri[] = L"https://db3.notify.windows.com/?token=AQ%2bE%2fw%3d";
constexpr wchar_t updated[] = L"NewMessage=UpdatedChannelURIAvailable";

Lines const uriRequested = RequestLines() + Lines{Info(L"RequestReceived for channel URI")};
Lines const stored = {Info(L"Channel URI Received"),
                      Info(L"Received Channel URI is https://db3.notify.windows.com/?token=AQ%%2bE%%2fw%%3d"),
                      Info(L"From Appservice channel : uri is written to local setting")};
std::wstring const found = Info(L"Channel URI found in local setting");
std::wstring const notFound = Info(L"Channel URI not found in local setting");
std::wstring const notFoundAfterSend = Error(L"No Channel URI found in local setting");
std::wstring const unableToWrite = Error(L"Appservice unable to write channel uri to localdata");
std::wstring const sent = Info(L"GetChannelUriStr Deferral Complete");
std::wstring const notSent =
    Error(L"GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP");
std::wstring const noException = Info(L"Inside GetChannelUriStr, task executed no exception seen");
std::wstring const exception = Error(L"Inside GetChannelUriStr, Exception raised in tast_creation for channelURI");

class GetChannelUri : public test::ServiceFlow
{
  protected:
    GetChannelUri() { host.ReplaceChannel(uri); }

    // A fault; "channel" stands for the request for the channel.
    void SetFault(std::wstring fault)
    {
        if (fault.starts_with(L"channel "))
        {
            fault.replace(0, 7, L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync");
        }
        host.SetFault(fault);
    }

    auto Ask() { return helper->Ask(L"GetChannelUri"); }
};

TEST_F(GetChannelUri, StoresTheUriAndSendsIt)
{
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1), (Lines{std::wstring(updated) + L" NewCuri=" + uri}));
    ExpectLog(uriRequested + stored + Lines{found}, {sent}, {noException});
    EXPECT_EQ(StoredUri(), uri);
    EXPECT_EQ(Completions(), std::vector<unsigned>{2});
}

TEST_F(GetChannelUri, IsAnsweredWithAnEmptyResponse)
{
    auto const response = Ask().get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(test::TestHelper::Text(response.Message()), L"");
}

TEST_F(GetChannelUri, WritesAUriThatIsStoredAlreadyAgain)
{
    StoreUri(winrt::box_value(uri));
    Ask();
    ExpectLog(uriRequested + stored + Lines{found}, {sent}, {noException});
}

TEST_F(GetChannelUri, SendsAStoredValueThatIsNoTextAsItIs)
{
    host.SetFault(L"ApplicationDataContainerSettings.Insert now 0x80073DC8 1");
    StoreUri(winrt::box_value(std::int32_t{42}));
    Ask();
    EXPECT_EQ(helper->WaitForMessages(2).back(),
              std::wstring(updated) + L" NewCuri=Windows.Foundation.IReference`1<Int32>");
}

TEST_F(GetChannelUri, TellsOfAnUpdateWithoutAUriWhenNoneIsReadBack)
{
    host.SetFault(L"ApplicationDataContainerSettings.Lookup null");
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{updated});
    ExpectLog(uriRequested + stored + Lines{notFound}, {sent}, {notFoundAfterSend, noException});
    EXPECT_EQ(Completions(), std::vector<unsigned>{2});
}

TEST_F(GetChannelUri, HasNothingToStoreWithoutSettings)
{
    host.SetFault(L"ApplicationData.LocalSettings null");
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{updated});
    ExpectLog(uriRequested + Lines{stored[0], stored[1], notFound}, {sent}, {notFoundAfterSend, noException});
}

// What makes storing the URI fail, once.
class GetChannelUriNotStored : public GetChannelUri, public testing::WithParamInterface<wchar_t const*>
{
  protected:
    // The line that is written before the setting is.
    bool LogsTheWrite() const { return std::wstring(GetParam()).find(L"Insert") != std::wstring::npos; }

    Lines StoredLines() const
    {
        return uriRequested + (LogsTheWrite() ? stored : Lines{stored[0], stored[1]}) + Lines{unableToWrite};
    }
};

TEST_P(GetChannelUriNotStored, SendsAMessageWithoutAUriAndThenTheOlderOne)
{
    StoreUri(winrt::box_value(L"older"));
    SetFault(GetParam());
    Ask();
    EXPECT_EQ(helper->WaitForMessages(2), (Lines{updated, std::wstring(updated) + L" NewCuri=older"}));
    ExpectLog(StoredLines(), {found, noException}, {sent, sent});
    EXPECT_EQ(Completions(), std::vector<unsigned>{3});
}

TEST_P(GetChannelUriNotStored, SendsTwoMessagesWithoutAUriWhenThereIsNoOlderOne)
{
    SetFault(GetParam());
    Ask();
    EXPECT_EQ(helper->WaitForMessages(2), (Lines{updated, updated}));
    ExpectLog(StoredLines(), {notFound, notFoundAfterSend, noException}, {sent, sent});
}

INSTANTIATE_TEST_SUITE_P(Failures, GetChannelUriNotStored,
                         testing::Values(L"ApplicationData now 0x80040154 1",
                                         L"ApplicationData.Current now 0x80073D54 1", L"ApplicationData.Current null 1",
                                         L"ApplicationData.LocalSettings now 0x80004005 1",
                                         L"ApplicationDataContainer.Values now 0x80004005 1",
                                         L"ApplicationDataContainer.Values null 1",
                                         L"ApplicationDataContainerSettings.Lookup now 0x80004005 1",
                                         L"ApplicationDataContainerSettings.Insert now 0x80073DC8 1",
                                         L"ApplicationDataContainerSettings.Insert now 0x8007000E 1"));

// What makes the request for the channel fail at once.
class GetChannelUriNotStarted : public GetChannelUri, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(GetChannelUriNotStarted, TellsOfAnUpdateWithoutAUri)
{
    SetFault(GetParam());
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1), Lines{updated});
    ExpectLog(uriRequested + Lines{Info(L"GetChannelUriStr Deferral Complete with exception in create task")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_P(GetChannelUriNotStarted, IsCompletedWhenThatCannotBeSent)
{
    SetFault(GetParam());
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(uriRequested +
              Lines{Error(L"GetChannelUriStr Deferral Complete with exception in task_creation, failed to "
                          L"send response to Helper APP")});
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_P(GetChannelUriNotStarted, StaysOpenWhenThatCannotBeWritten)
{
    SetFault(GetParam());
    host.SetFault(L"ValueSet.Insert now 0x80004005 1");
    auto const request = Ask();
    log->WaitForLines(uriRequested.size());
    host.WaitUntilQuiet();
    ExpectLog(uriRequested);
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
}

INSTANTIATE_TEST_SUITE_P(Failures, GetChannelUriNotStarted,
                         testing::Values(L"PushNotificationChannelManager now 0x80040154", L"channel now 0x803E0103",
                                         L"channel now 0x8007000E", L"channel null", L"channel unheard 0x8000000E"));

// What goes wrong later, and is reported by the end of the chain: the lines until then, and the fault.
struct LaterFailure
{
    wchar_t const* fault;
    Lines lines;
};

void PrintTo(LaterFailure const& failure, std::ostream* stream)
{
    *stream << testing::PrintToString(failure.fault);
}

class GetChannelUriFailingLater : public GetChannelUri, public testing::WithParamInterface<LaterFailure>
{
};

TEST_P(GetChannelUriFailingLater, SendsNothingAndIsCompletedOnce)
{
    SetFault(GetParam().fault);
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(uriRequested + GetParam().lines + Lines{exception});
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

INSTANTIATE_TEST_SUITE_P(
    Failures, GetChannelUriFailingLater,
    testing::Values(LaterFailure{L"channel completion 0x880403E8", {}},
                    LaterFailure{L"PushNotificationChannel.Uri now 0x80004005", {stored[0]}},
                    LaterFailure{L"ApplicationData.Current now 0x80004005 1 after 1", stored},
                    LaterFailure{L"ApplicationData.LocalSettings now 0x80004005 1 after 1", stored},
                    LaterFailure{L"ApplicationDataContainerSettings.Lookup now 0x80004005 1 after 1", stored},
                    LaterFailure{L"ValueSet.Insert now 0x80004005 1", stored + Lines{found}},
                    LaterFailure{L"ValueSet.Insert now 0x80004005 1 after 1", stored + Lines{found}}));

TEST_F(GetChannelUri, LeavesNoTraceAndStaysOpenWhenTheChannelRequestIsCancelled)
{
    SetFault(L"channel cancelled");
    auto const request = Ask();
    log->WaitForLines(uriRequested.size());
    host.WaitUntilQuiet();
    ExpectLines(log->Lines(), uriRequested);
    helper->Close(); // ends the request, which is never completed
    EXPECT_EQ(request.get().Status(), AppServiceResponseStatus::Failure);
    EXPECT_EQ(Completions(), std::vector<unsigned>{0});
}

TEST_F(GetChannelUri, DoesNotHoldUpOthersWhenItsChannelNeverComes)
{
    SetFault(L"channel never 1");
    auto const request = Ask();
    EXPECT_EQ(helper->Ask(L"UnregisterBackgroundTask").get().Status(), AppServiceResponseStatus::Success);
    EXPECT_TRUE(request.IsOpen());
}

TEST_F(GetChannelUri, IsCompletedTwiceWhenTheMessageCannotBeSent)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(uriRequested + stored + Lines{found, notSent, noException});
    EXPECT_EQ(helper->Messages(), Lines());
    EXPECT_EQ(Completions(), std::vector<unsigned>{2});
}

TEST_F(GetChannelUri, IsCompletedByTheEndOfTheChainWhenTheFailedSendCouldNotComplete)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    host.SetFault(L"AppServiceDeferral.Complete now 0x80004005 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(uriRequested + stored + Lines{found, exception});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(GetChannelUri, IsNotDisturbedByACompletionThatThePlatformRefusesAfterAnother)
{
    host.SetFault(L"AppServiceDeferral.Complete now 0x8000000E 1000 after 1");
    EXPECT_EQ(Ask().get().Status(), AppServiceResponseStatus::Success);
    ExpectLog(uriRequested + stored + Lines{found}, {sent}, {noException});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(GetChannelUri, EndsAsWithAnExceptionWhenTheEndOfTheChainCannotComplete)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync never 1");
    host.SetFault(L"AppServiceDeferral.Complete now 0x80004005 1");
    Ask();
    ExpectLog(uriRequested + stored + Lines{found, exception});
    EXPECT_EQ(Completions(), std::vector<unsigned>{1});
}

TEST_F(GetChannelUri, SaysThatTheUriIsNotStoredBeforeItSends)
{
    StoreUri(winrt::box_value(L"older"));
    host.SetFault(L"ApplicationDataContainerSettings.Insert now 0x80073DC8 1");
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1"); // its line comes at once
    Ask();
    ExpectLog(uriRequested + stored + Lines{unableToWrite, notSent, found}, {noException}, {sent});
    EXPECT_EQ(Completions(), std::vector<unsigned>{3});
}

TEST_F(GetChannelUri, SendsTheVeryObjectThatIsStored)
{
    host.SetFault(L"PropertyValue.CreateString now 0x80004005 1000 after 2"); // one to store it, one for "NewMessage"
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1), (Lines{std::wstring(updated) + L" NewCuri=" + uri}));
    ExpectLog(uriRequested + stored + Lines{found}, {sent}, {noException});
}

TEST_F(GetChannelUri, SaysThatNoUriIsStoredAlsoWhenTheMessageCannotBeSent)
{
    host.SetFault(L"ApplicationDataContainerSettings.Lookup null");
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    Ask();
    ExpectLog(uriRequested + stored + Lines{notFound, notSent, notFoundAfterSend, noException});
}

// The outcome of a send is ignored, whether it fails or has another status than success.
class GetChannelUriSendFailing : public GetChannelUri, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(GetChannelUriSendFailing, LogsTheSameAsOneThatWorks)
{
    host.SetFault(std::wstring(L"AppServiceConnection.SendMessageAsync ") + GetParam() + L" 1");
    Ask();
    ExpectLog(uriRequested + stored + Lines{found}, {sent}, {noException});
    EXPECT_EQ(Completions(), std::vector<unsigned>{2});
}

INSTANTIATE_TEST_SUITE_P(Outcomes, GetChannelUriSendFailing,
                         testing::Values(L"completion 0x800706BA", L"status 1", L"status 2", L"cancelled"));

// Each URI is logged with doubled percent signs, stored and sent unchanged.
class GetChannelUriOf : public GetChannelUri, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(GetChannelUriOf, PassesItOnAsItIs)
{
    host.ReplaceChannel(GetParam());
    Ask();
    EXPECT_EQ(helper->WaitForMessages(1).front(), std::wstring(updated) + L" NewCuri=" + GetParam());
    EXPECT_EQ(StoredUri(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Uris, GetChannelUriOf, testing::Values(L"a%2bb", L"%s%n%ls", L"", L"%", L"%%"));

TEST_F(GetChannelUri, LogsAUriOfFormatDirectivesWithDoubledPercentSigns)
{
    host.ReplaceChannel(L"%s%n");
    Ask();
    helper->WaitForMessages(1);
    EXPECT_EQ(log->WaitForLines(5)[4], Info(L"Received Channel URI is %%s%%n"));
}

TEST_F(GetChannelUri, DoesNotStoreAUriThatIsTooLongForASetting)
{
    host.ReplaceChannel(std::wstring(8192, L'u'));
    Ask();
    EXPECT_EQ(helper->WaitForMessages(2), (Lines{updated, updated}));
}

TEST_F(GetChannelUri, GoesOutOnTheNewerConnection)
{
    test::TestHelper const newer;
    Ask();
    EXPECT_EQ(newer.WaitForMessages(1).size(), 1u);
    EXPECT_EQ(helper->Messages(), Lines());
}

// A helper that connects during a request, at this line.
struct Moment
{
    wchar_t const* command;
    wchar_t const* line;
};

void PrintTo(Moment const& moment, std::ostream* stream)
{
    *stream << testing::PrintToString(moment.command);
}

class GetChannelUriOnANewerConnection : public test::ServiceFlow, public testing::WithParamInterface<Moment>
{
};

TEST_P(GetChannelUriOnANewerConnection, GoesOutOnTheOneOfTheMomentOfSending)
{
    std::optional<test::TestHelper> newer;
    log->After(GetParam().line, [&] { newer.emplace(); });
    auto const request = helper->Ask(GetParam().command);
    log->WaitForMessage(GetParam().line);
    EXPECT_EQ(request.get().Status(), AppServiceResponseStatus::Success);
    ASSERT_TRUE(newer.has_value());
    EXPECT_EQ(newer->WaitForMessages(1).size(), 1u);
    EXPECT_EQ(helper->Messages(), Lines());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, GetChannelUriOnANewerConnection,
    testing::Values(Moment{L"GetChannelUri", L"Channel URI Received"},
                    Moment{L"RegisterBackgroundTask", L"Event Set Sucesfully for device registration"},
                    Moment{L"UnregisterBackgroundTask", L"ZEB From Appservice Unregister all the background tasks"}));

} // namespace
