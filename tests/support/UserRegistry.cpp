#include "tests/support/UserRegistry.h"

#include <gtest/gtest.h>

namespace test
{

namespace
{

HKEY CreateVolatileKey(HKEY parent, std::wstring const& path)
{
    HKEY key = nullptr;
    auto const result =
        RegCreateKeyExW(parent, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    EXPECT_EQ(result, ERROR_SUCCESS) << testing::PrintToString(path);
    return key;
}

} // namespace

UserRegistry::UserRegistry()
    : m_path(L"Software\\VelmoTest" + std::to_wstring(GetCurrentProcessId())),
      m_key(CreateVolatileKey(HKEY_CURRENT_USER, m_path))
{
    EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, m_key), ERROR_SUCCESS);
}

UserRegistry::~UserRegistry()
{
    EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, nullptr), ERROR_SUCCESS);
    RegCloseKey(m_key);
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str()), ERROR_SUCCESS);
}

void UserRegistry::Set(std::wstring const& key, std::wstring const& name, DWORD type, std::string_view data) const
{
    auto* const opened = CreateVolatileKey(m_key, key);
    EXPECT_EQ(RegSetValueExW(opened, name.c_str(), 0, type, reinterpret_cast<BYTE const*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
    RegCloseKey(opened);
}

} // namespace test
