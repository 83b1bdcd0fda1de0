#pragma once
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sim
{

// The files and names of a device. A device is a folder that holds all that the simulator stores and all that its apps
// write, so that devices are independent of each other.
class Device
{
  public:
    explicit Device(std::wstring const& home);

    // The device named by the environment variable VELMO_SIM_HOME. Throws Error when it is not set.
    static Device FromEnvironment();

    std::wstring const& Home() const noexcept { return m_home; }

    // The pipe of the device's broker.
    std::wstring PipeName() const { return L"\\\\.\\pipe\\" + NameFor(L"velmo-sim"); }

    // Owned by the broker while it serves the device.
    std::wstring MutexName() const { return NameFor(L"velmo-sim-serving"); }

    // Set by a new broker once its pipe exists.
    std::wstring ReadyEventName() const { return NameFor(L"velmo-sim-ready"); }

    std::wstring JournalFile() const { return m_home + L"\\events.log"; }

    // Contains the path of the registered package's folder.
    std::wstring RegistrationFile() const { return m_home + L"\\package.txt"; }

    // What the platform keeps: see simulator/platform.
    std::wstring ClockFile() const { return m_home + L"\\clock.txt"; }

    // Exists while a broker serves the device; a killed broker leaves it behind.
    std::wstring SessionFile() const { return m_home + L"\\session.txt"; }

    // An app's data; the temporary folder of its container, which GetTempPathW returns to the app.
    std::wstring PackageDataFolder(std::wstring const& familyName) const
    {
        return m_home + L"\\Packages\\" + familyName;
    }

    std::wstring AppTemporaryFolder(std::wstring const& familyName) const
    {
        return PackageDataFolder(familyName) + L"\\AC\\Temp";
    }

    // What the platform keeps for a package family; removed with the app's data.
    std::wstring StateFolder(std::wstring const& familyName) const
    {
        return PackageDataFolder(familyName) + L"\\SystemAppData";
    }

    std::wstring TasksFile(std::wstring const& familyName) const { return StateFolder(familyName) + L"\\tasks.txt"; }
    std::wstring ChannelFile(std::wstring const& familyName) const
    {
        return StateFolder(familyName) + L"\\channel.txt";
    }

    // All that the platform keeps, for the device and for one family; and the path that a damaged file is moved to.
    std::vector<std::wstring> StateFiles(std::wstring const& familyName) const
    {
        return {TasksFile(familyName), ChannelFile(familyName), ClockFile(), SessionFile()};
    }

    static std::wstring SetAside(std::wstring const& stateFile) { return stateFile + L".damaged"; }

    // The user's temporary folder, which desktop programs use.
    std::wstring DesktopTemporaryFolder() const { return m_home + L"\\Temp"; }

    // The environment variables of the package's processes, in place of their parent's. GetTempPathW reads TMP first.
    std::vector<std::pair<std::wstring, std::wstring>> Environment(std::wstring const& temporaryFolder) const
    {
        return {{L"VELMO_SIM_HOME", m_home},
                {L"LOCALAPPDATA", m_home},
                {L"TEMP", temporaryFolder},
                {L"TMP", temporaryFolder}};
    }

    // The report of a stand-in desktop component about itself, one file for each process.
    std::wstring DesktopReportFile(unsigned long processId) const
    {
        return m_home + L"\\desktop\\" + std::to_wstring(processId) + L".txt";
    }

    // The crash report that the app's process writes.
    std::wstring CrashFile(unsigned long processId) const
    {
        return m_home + L"\\crashes\\" + std::to_wstring(processId) + L".txt";
    }

    // The output of a scenario's desktop helpers, a file for each.
    std::wstring HelpersFolder() const { return m_home + L"\\helpers"; }

    // A device's own copy of a package, for scenarios that need it incomplete.
    std::wstring LayoutCopy() const { return m_home + L"\\layout"; }

    // Removes all that the simulator and its apps have written, and nothing else.
    void Clear() const;

  private:
    // The same for any spelling of the folder.
    std::wstring NameFor(std::wstring_view purpose) const;

    std::wstring m_home;
};

} // namespace sim
