#include "service/ChannelUri.h"

#include "service/AppServiceLog.h"
#include "service/NotNull.h"

#include <string>
#include <string_view>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Storage.h>

using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;
using namespace winrt::Windows::Networking::PushNotifications;
using namespace winrt::Windows::Storage;

namespace VelmoNotificationClient
{

namespace
{

constexpr wchar_t uriKey[] = L"CURI";

// The URI as part of a log message, with each percent sign doubled.
std::wstring ForLog(std::wstring_view uri)
{
    std::wstring text;
    text.reserve(2 * uri.size());
    for (auto const character : uri)
    {
        text.append(character == L'%' ? 2 : 1, character);
    }
    return text;
}

// Null when the app has no local settings.
IPropertySet SettingsValues()
{
    auto const settings = NotNull(ApplicationData::Current()).LocalSettings();
    return settings ? NotNull(settings.Values()) : nullptr;
}

void Write(winrt::hstring const& uri, wchar_t const* writeLine)
{
    auto const values = SettingsValues();
    if (!values)
    {
        return;
    }
    // Called for its failure only: the URI is written whether or not it has changed.
    static_cast<void>(values.Lookup(uriKey));
    appServiceLog.Info(writeLine);
    values.Insert(uriKey, winrt::box_value(uri));
}

} // namespace

bool StoreChannelUri(PushNotificationChannel const& channel, wchar_t const* writeLine, wchar_t const* storedLine)
{
    appServiceLog.Info(L"Channel URI Received");
    auto const uri = NotNull(channel).Uri();
    appServiceLog.Info(L"Received Channel URI is %ls", ForLog(uri).c_str());
    try
    {
        Write(uri, writeLine);
        if (storedLine)
        {
            appServiceLog.Info(storedLine);
        }
        return true;
    }
    catch (...)
    {
        return false;
    }
}

IInspectable StoredChannelUri()
{
    auto const values = SettingsValues();
    return values ? values.Lookup(uriKey) : nullptr;
}

} // namespace VelmoNotificationClient
