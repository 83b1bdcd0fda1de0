#include "simulator/protocol/Device.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"

#include <cstdint>
#include <windows.h>

namespace sim
{

namespace
{

// FNV-1a, over the path in one case, as the file system compares it.
std::wstring HashOf(std::wstring const& path)
{
    auto const length = static_cast<int>(path.size());
    std::wstring folded = path;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, path.data(), length, folded.data(), length, nullptr, nullptr,
                  0);
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (auto const character : folded)
    {
        hash = (hash ^ character) * 0x100000001B3u;
    }
    std::wstring text;
    for (int shift = 60; shift >= 0; shift -= 4)
    {
        text += L"0123456789abcdef"[(hash >> shift) & 0xF];
    }
    return text;
}

} // namespace

Device::Device(std::wstring const& home) : m_home(FullPath(home)) {}

Device Device::FromEnvironment()
{
    wchar_t home[MAX_PATH];
    auto const length = GetEnvironmentVariableW(L"VELMO_SIM_HOME", home, ARRAYSIZE(home));
    if (length == 0 || length >= ARRAYSIZE(home))
    {
        throw Error(L"set the environment variable VELMO_SIM_HOME to the folder of the device");
    }
    return Device(home);
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
    for (auto const* name : {L"Packages", L"Temp", L"desktop", L"crashes", L"layout", L"events.log", L"package.txt"})
    {
        Remove(m_home + L"\\" + name);
    }
    for (auto const& file : StateFiles())
    {
        Remove(file);
        Remove(SetAside(file));
    }
}

} // namespace sim
