#pragma once
#include <string>
#include <string_view>
#include <windows.h>

namespace test
{

// Gives this process an empty registry of the current user while it exists, invisible to other tests. Kept in memory;
// deleted with the object.
class UserRegistry
{
  public:
    UserRegistry();
    UserRegistry(UserRegistry const&) = delete;
    UserRegistry& operator=(UserRegistry const&) = delete;
    ~UserRegistry();

    // Stores a value. Creates the key when missing. data: the bytes of the value.
    void Set(std::wstring const& key, std::wstring const& name, DWORD type, std::string_view data) const;

  private:
    std::wstring m_path;
    HKEY m_key = nullptr;
};

} // namespace test
