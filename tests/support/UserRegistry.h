#pragma once
#include <string>
#include <string_view>
#include <windows.h>

namespace test
{

// As long as this lives, the current user's part of the registry is for this process an empty one of its own, which
// other tests do not see. It is kept in memory and goes with the object.
class UserRegistry
{
  public:
    UserRegistry();
    UserRegistry(UserRegistry const&) = delete;
    UserRegistry& operator=(UserRegistry const&) = delete;
    ~UserRegistry();

    // Stores a value as it is, in a key that is made if need be. data: its bytes.
    void Set(std::wstring const& key, std::wstring const& name, DWORD type, std::string_view data) const;

  private:
    std::wstring m_path;
    HKEY m_key = nullptr;
};

} // namespace test
