#include "bench/ServiceApp.h"

#include "bench/BareLine.h"
#include "service/Messages.h"
#include "service/NotificationAppService.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>
#include <winrt/Windows.Storage.h>

using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;
using namespace winrt::Windows::Networking::PushNotifications;
using namespace winrt::Windows::Storage;

namespace bench
{

namespace
{

namespace Messages = VelmoNotificationClient::Messages;

// So many log lines.
using WriteLines = void (*)(int lines);

void WriteNone(int) {}

void WriteBareLines(int lines)
{
    static BareLine const line(_wgetenv(L"TMP") + std::wstring(L"\\bare.log"), std::wstring(100, L'x'));
    for (int count = 0; count < lines; ++count)
    {
        line.Write();
    }
}

void SendAndComplete(AppServiceConnection const& connection, IInspectable const& uri,
                     AppServiceDeferral const& deferral, WriteLines writeLines)
{
    ValueSet const reply;
    reply.Insert(Messages::newMessageKey, winrt::box_value(Messages::updatedChannelUriAvailable));
    reply.Insert(Messages::newCuriKey, uri);
    connection.SendMessageAsync(reply).Completed([deferral, writeLines](auto&&...) {
        deferral.Complete();
        writeLines(1);
    });
}

void AnswerAtOnce(AppServiceConnection const& connection, AppServiceRequestReceivedEventArgs const& args)
{
    SendAndComplete(connection, winrt::box_value(L"https://db3.notify.windows.com/?token=AQ%2bE%2fw%3d"),
                    args.GetDeferral(), WriteNone);
}

IPropertySet Settings()
{
    return ApplicationData::Current().LocalSettings().Values();
}

// The product's calls and places of lines, in its order.
winrt::fire_and_forget AnswerPlainly(AppServiceConnection connection, AppServiceRequestReceivedEventArgs args,
                                     WriteLines writeLines)
{
    constexpr wchar_t key[] = L"CURI";
    writeLines(2);
    auto const deferral = args.GetDeferral();
    if (winrt::unbox_value<winrt::hstring>(args.Request().Message().Lookup(Messages::commandKey)) !=
        Messages::getChannelUri)
    {
        co_return;
    }
    writeLines(1);
    auto const request = PushNotificationChannelManager::CreatePushNotificationChannelForApplicationAsync();
    auto const channel = co_await winrt::resume_agile(request);
    writeLines(2);
    auto const values = Settings();
    static_cast<void>(values.Lookup(key));
    writeLines(1);
    values.Insert(key, winrt::box_value(channel.Uri()));
    auto const uri = Settings().Lookup(key);
    writeLines(1);
    SendAndComplete(connection, uri, deferral, writeLines);
    deferral.Complete();
    writeLines(1);
}

template <typename Handler>
void Serve(BackgroundActivatedEventArgs const& args, Handler handler)
{
    auto const task = args.TaskInstance();
    auto const connection = task.TriggerDetails().as<AppServiceTriggerDetails>().AppServiceConnection();
    // The handler keeps the task running, and its connection open, until the connection is closed.
    connection.RequestReceived([handler, deferral = task.GetDeferral(), connection](auto&&, auto const& request) {
        handler(connection, request);
    });
}

} // namespace

void ServiceApp::OnBackgroundActivated(BackgroundActivatedEventArgs const& args)
{
    switch (m_connections++)
    {
    case Null:
        Serve(args, AnswerAtOnce);
        break;
    case Plain:
        Serve(args, [](auto const& connection, auto const& request) { AnswerPlainly(connection, request, WriteNone); });
        break;
    case PlainWithLines:
        Serve(args,
              [](auto const& connection, auto const& request) { AnswerPlainly(connection, request, WriteBareLines); });
        break;
    default:
        winrt::make_self<VelmoNotificationClient::NotificationAppService>()->ServiceNewConnection(args);
    }
}

} // namespace bench
