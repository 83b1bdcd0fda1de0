#include "simulator/protocol/Device.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"

#include <functional>
#include <windows.h>

namespace sim
{

Device::Device(std::wstring const& home) : m_home(FullPath(home)) {}

Device Device::FromEnvironment()
{
    auto const home = EnvironmentValue(L"VELMO_SIM_HOME");
    return home ? Device(*home)
                : throw Error(L"set the environment variable VELMO_SIM_HOME to the folder of the device");
}

// A hash of the upper-case path, since the file system ignores the case. Each program of a build computes the same one.
std::wstring Device::NameFor(std::wstring_view purpose) const
{
    auto const length = static_cast<int>(m_home.size());
    std::wstring upper = m_home;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, m_home.data(), length, upper.data(), length, nullptr, nullptr,
                  0);
    return std::wstring(purpose) + L"-" + std::to_wstring(std::hash<std::wstring>()(upper));
}

void Device::Clear() const
{
    for (auto const* name :
         {L"Packages", L"Temp", L"desktop", L"crashes", L"helpers", L"layout", L"events.log", L"package.txt"})
    {
        Remove(m_home + L"\\" + name);
    }
    for (auto const& file : {ClockFile(), SessionFile()})
    {
        Remove(file);
        Remove(SetAside(file));
    }
}

} // namespace sim
