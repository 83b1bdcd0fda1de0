#include "simulator/runtime/storage/SettingsStore.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/SettingsFile.h"
#include "simulator/runtime/CurrentHost.h"
#include "simulator/runtime/values/ValueBytes.h"

#include <windows.h>

namespace sim
{

namespace
{

constexpr auto settingTooLarge = static_cast<std::int32_t>(0x80073DC8); // ERROR_STATE_SETTING_VALUE_SIZE_LIMIT_EXCEEDED
constexpr std::size_t longestName = 255;
constexpr std::size_t largestValue = 8192; // bytes, of which some are spent on
constexpr std::size_t overhead = 2;

SetEntry SettingOf(std::wstring_view name, IInspectable const& value)
{
    if (value.try_as<Collections::IPropertySet>())
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_UNSUPPORTED_TYPE));
    }
    auto setting = EntryOf(name, value);
    if (name.size() > longestName || setting.bytes.size() + overhead > largestValue)
    {
        throw winrt::hresult_error(settingTooLarge);
    }
    return setting;
}

// Reading and writing fail as the platform does.
template <typename Function>
auto OnDisk(Function function)
try
{
    return function();
}
catch (Error const& error)
{
    throw winrt::hresult_error(E_FAIL, winrt::hstring(error.Message()));
}

NamedValues::Entries EntriesIn(std::wstring const& path)
{
    NamedValues::Entries entries;
    for (auto const& setting : OnDisk([&] { return ReadSettings(path); }))
    {
        entries.emplace_back(setting.name, ValueFrom(setting));
    }
    return entries;
}

} // namespace

std::shared_ptr<SettingsStore> SettingsStore::OfThisProcess()
{
    static std::mutex mutex;
    static std::shared_ptr<SettingsStore> store;
    static std::weak_ptr<Host> owner;
    std::lock_guard const lock(mutex);
    if (!store || owner.lock().get() != &CurrentHost())
    {
        store = std::make_shared<SettingsStore>(SettingsFileIn(CurrentHost().DataFolder()));
        owner = CurrentHost().weak_from_this();
    }
    return store;
}

SettingsStore::SettingsStore(std::wstring path) : NamedValues(EntriesIn(path)), m_path(std::move(path)) {}

IInspectable SettingsStore::CopyOf(winrt::hstring const& name) const
{
    auto const value = Find(name);
    return value ? ValueFrom(EntryOf(name, *value)) : nullptr;
}

bool SettingsStore::Insert(winrt::hstring const& name, IInspectable const& value)
{
    return value ? NamedValues::Insert(name, ValueFrom(SettingOf(name, value))) : Remove(name);
}

void SettingsStore::Save(Entries const& entries)
{
    SetEntries settings;
    for (auto const& [name, value] : entries)
    {
        settings.push_back(EntryOf(name, value));
    }
    OnDisk([&] { WriteSettings(m_path, settings); });
}

} // namespace sim
