#pragma once
#include "tests/support/WrappedSystem.h"

#include <bit>
#include <map>
#include <string>
#include <string_view>

namespace test
{

REPLACEABLE(LoadLibraryCall, LoadLibraryExW);
REPLACEABLE(SessionIdCall, ProcessIdToSessionId);

// The functions that the doctor looks up by their names: those that a test gives, and no other.
class SystemFunctions
{
  public:
    template <typename Type>
    void Set(std::string const& name, Type* function)
    {
        m_functions[name] = std::bit_cast<FARPROC>(function);
    }

  private:
    static bool IsLookedUp(std::string_view name)
    {
        return name == "GetPackagesByPackageFamily" || name == "GetPackagePathByFullName" ||
               name == "DeriveAppContainerSidFromAppContainerName" || name == "GetAppContainerNamedObjectPath";
    }

    std::map<std::string, FARPROC> m_functions;
    GetProcAddressCall m_call{[this](auto next, HMODULE module, char const* name) -> FARPROC {
        if (reinterpret_cast<std::uintptr_t>(name) <= 0xFFFF || !IsLookedUp(name))
        {
            return next(module, name);
        }
        auto const found = m_functions.find(name);
        return found == m_functions.end() ? nullptr : found->second;
    }};
};

} // namespace test
