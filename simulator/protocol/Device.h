#pragma once
#include <string>
#include <vector>

namespace sim
{

// Where a device keeps what. A device is a folder: everything the simulator knows and everything its apps write lies
// in it, so that devices do not meet.
class Device
{
  public:
    explicit Device(std::wstring const& home);

    // The device named by the environment variable VELMO_SIM_HOME. Throws Error when it is not set.
    static Device FromEnvironment();

    std::wstring const& Home() const noexcept { return m_home; }

    // Where the device's broker is reached: the same for any spelling of the folder.
    std::wstring PipeName() const;

    // Owned by the broker as long as it serves.
    std::wstring MutexName() const;

    // Set by a new broker when its pipe is there.
    std::wstring ReadyEventName() const;

    std::wstring JournalFile() const { return m_home + L"\\events.log"; }

    // The folder of the registered package, as text.
    std::wstring RegistrationFile() const { return m_home + L"\\package.txt"; }

    // What the platform keeps: see simulator/platform.
    std::wstring ClockFile() const { return m_home + L"\\clock.txt"; }

    // There while a broker serves the device: one that is killed leaves it.
    std::wstring SessionFile() const { return m_home + L"\\session.txt"; }

    // An app's data; its container's own temporary folder, as GetTempPathW gives it inside.
    std::wstring PackageDataFolder(std::wstring const& familyName) const
    {
        return m_home + L"\\Packages\\" + familyName;
    }

    std::wstring AppTemporaryFolder(std::wstring const& familyName) const
    {
        return PackageDataFolder(familyName) + L"\\AC\\Temp";
    }

    // What the platform keeps for a package family: it goes with the app's data.
    std::wstring StateFolder(std::wstring const& familyName) const
    {
        return PackageDataFolder(familyName) + L"\\SystemAppData";
    }

    std::wstring TasksFile(std::wstring const& familyName) const { return StateFolder(familyName) + L"\\tasks.txt"; }
    std::wstring ChannelFile(std::wstring const& familyName) const
    {
        return StateFolder(familyName) + L"\\channel.txt";
    }

    // All that the platform keeps, with what is of one family, and where a file of it goes that is damaged.
    std::vector<std::wstring> StateFiles(std::wstring const& familyName) const
    {
        return {TasksFile(familyName), ChannelFile(familyName), ClockFile(), SessionFile()};
    }

    static std::wstring SetAside(std::wstring const& stateFile) { return stateFile + L".damaged"; }

    // The user's own temporary folder, where desktop programs write.
    std::wstring DesktopTemporaryFolder() const { return m_home + L"\\Temp"; }

    // What the stand-in desktop components saw of themselves, one file for each process.
    std::wstring DesktopReportFile(unsigned long processId) const
    {
        return m_home + L"\\desktop\\" + std::to_wstring(processId) + L".txt";
    }

    // Where the app's process crashed, told by itself.
    std::wstring CrashFile(unsigned long processId) const
    {
        return m_home + L"\\crashes\\" + std::to_wstring(processId) + L".txt";
    }

    // What the desktop helpers of a scenario print, a file for each.
    std::wstring HelpersFolder() const { return m_home + L"\\helpers"; }

    // A device's own copy of a package, for scenarios that need it incomplete.
    std::wstring LayoutCopy() const { return m_home + L"\\layout"; }

    // Removes what the simulator and its apps made, and nothing else.
    void Clear() const;

  private:
    std::wstring m_home;
};

} // namespace sim
