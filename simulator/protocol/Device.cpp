#include "simulator/protocol/Device.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"

#include <functional>
#include <windows.h>

namespace sim
{

namespace
{

// Of the path in one case, as the file system compares it. The same in each program of a build.
std::wstring HashOf(std::wstring const& path)
{
    auto const length = static_cast<int>(path.size());
    std::wstring folded = path;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, path.data(), length, folded.data(), length, nullptr, nullptr,
                  0);
    return std::to_wstring(std::hash<std::wstring>()(folded));
}

} // namespace

Device::Device(std::wstring const& home) : m_home(FullPath(home)) {}

Device Device::FromEnvironment()
{
    auto const home = EnvironmentValue(L"VELMO_SIM_HOME");
    return home ? Device(*home)
                : throw Error(L"set the environment variable VELMO_SIM_HOME to the folder of the device");
}

std::wstring Device::PipeName() const
{
    return L"\\\\.\\pipe\\velmo-sim-" + HashOf(m_home);
}

std::wstring Device::MutexName() const
{
    return L"velmo-sim-serving-" + HashOf(m_home);
}

std::wstring Device::ReadyEventName() const
{
    return L"velmo-sim-ready-" + HashOf(m_home);
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
