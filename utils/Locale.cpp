#include "utils/Locale.h"

#include "utils/LocaleNames.h"

#include <memory>
#include <new>
#include <type_traits>
#include <windows.h>

namespace zant
{

namespace
{

struct CloseKey
{
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};

using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

constexpr wchar_t valueName[] = L"QDLangPref";

UniqueKey OpenPreferences() noexcept
{
    HKEY key = nullptr;
    auto const result = RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Velmo\\VLCID", 0, KEY_READ, &key);
    return UniqueKey(result == ERROR_SUCCESS ? key : nullptr);
}

} // namespace

std::wstring ReadLocalePreference() noexcept
try
{
    auto const key = OpenPreferences();
    DWORD bytes = 0;
    if (!key || RegQueryValueExW(key.get(), valueName, nullptr, nullptr, nullptr, &bytes) != ERROR_SUCCESS ||
        bytes == 0)
    {
        return {};
    }
    // One character for each byte: room for a value that grows between the two calls. The string ends at its first
    // zero; the buffer has one more element, for a value stored without a terminator.
    std::wstring buffer(bytes, L'\0');
    auto capacity = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
    auto* const data = reinterpret_cast<BYTE*>(buffer.data());
    if (RegQueryValueExW(key.get(), valueName, nullptr, nullptr, data, &capacity) != ERROR_SUCCESS)
    {
        return {};
    }
    buffer.resize(std::char_traits<wchar_t>::length(buffer.c_str()));
    return buffer;
}
catch (std::bad_alloc const&)
{
    return {};
}

bool GetUserLocale(std::wstring& result) noexcept
{
    result = ReadLocalePreference();
    if (result.empty())
    {
        // Five characters, which a string holds without allocating.
        result = LocaleName(GetUserDefaultUILanguage(), GetUserDefaultLangID());
    }
    return true;
}

} // namespace zant
