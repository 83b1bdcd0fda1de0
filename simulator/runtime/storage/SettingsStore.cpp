#include "simulator/runtime/storage/SettingsStore.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/SettingsFile.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <windows.h>

namespace sim
{

namespace
{

constexpr auto settingTooLarge = static_cast<std::int32_t>(0x80073DC8); // ERROR_STATE_SETTING_VALUE_SIZE_LIMIT_EXCEEDED
constexpr std::size_t longestName = 255;
constexpr std::size_t largestValue = 8192; // bytes, of which some are spent on
constexpr std::size_t overhead = 2;

auto FindIn(auto& settings, std::wstring_view name)
{
    return std::ranges::find_if(settings, [&](auto const& setting) { return setting.name == name; });
}

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

SettingsStore::SettingsStore(std::wstring path)
try : m_path(std::move(path)), m_settings(ReadSettings(m_path)) {}
catch (Error const& error)
{
    throw winrt::hresult_error(E_FAIL, winrt::hstring(error.Message()));
}

IInspectable SettingsStore::Find(std::wstring_view name) const
{
    std::lock_guard const lock(m_mutex);
    auto const found = FindIn(m_settings, name);
    return found == m_settings.end() ? nullptr : ValueFrom(*found);
}

bool SettingsStore::Contains(std::wstring_view name) const
{
    std::lock_guard const lock(m_mutex);
    return FindIn(m_settings, name) != m_settings.end();
}

std::vector<std::wstring> SettingsStore::Names() const
{
    std::lock_guard const lock(m_mutex);
    std::vector<std::wstring> names;
    std::ranges::transform(m_settings, std::back_inserter(names), &SetEntry::name);
    return names;
}

bool SettingsStore::Insert(std::wstring_view name, IInspectable const& value)
{
    if (!value)
    {
        return Remove(name);
    }
    auto setting = SettingOf(name, value);
    std::lock_guard const lock(m_mutex);
    auto settings = m_settings;
    auto const found = FindIn(settings, name);
    auto const replaces = found != settings.end();
    if (replaces)
    {
        *found = std::move(setting);
    }
    else
    {
        settings.push_back(std::move(setting));
    }
    Keep(std::move(settings));
    return replaces;
}

bool SettingsStore::Remove(std::wstring_view name)
{
    std::lock_guard const lock(m_mutex);
    auto settings = m_settings;
    auto const removed = std::erase_if(settings, [&](auto const& setting) { return setting.name == name; });
    if (removed > 0)
    {
        Keep(std::move(settings));
    }
    return removed > 0;
}

void SettingsStore::Clear()
{
    std::lock_guard const lock(m_mutex);
    Keep({});
}

void SettingsStore::Keep(SetEntries settings)
try
{
    WriteSettings(m_path, settings);
    m_settings = std::move(settings);
}
catch (Error const& error)
{
    throw winrt::hresult_error(E_FAIL, winrt::hstring(error.Message()));
}

} // namespace sim
