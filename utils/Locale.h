#pragma once
#include <string>

namespace zant
{

// The locale that the desktop suite stores for the user in the registry, unchanged, whatever its type. Empty when there
// is none, it cannot be read, or memory is short. Any thread.
std::wstring ReadLocalePreference() noexcept;

// The user's locale, such as "en_US": the stored preference, or else the suite's locale for the user's Windows
// languages. Always true; nothing is logged. Any thread.
bool GetUserLocale(std::wstring& result) noexcept;

} // namespace zant
