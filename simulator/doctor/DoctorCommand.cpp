#include "simulator/doctor/DoctorCommand.h"

#include "console/Console.h"
#include "doctor/cli/LocalNow.h"
#include "doctor/verdict/FindingText.h"
#include "doctor/verdict/ReportJson.h"
#include "doctor/verdict/ReportText.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/client/BrokerClient.h"
#include "simulator/doctor/Examination.h"
#include "simulator/doctor/LeftOver.h"
#include "simulator/log/AppLog.h"
#include "simulator/log/LogVerdict.h"
#include "simulator/platform/Journal.h"
#include "simulator/protocol/SettingsFile.h"

#include <algorithm>

namespace sim
{

namespace
{

std::optional<std::wstring> StoredUri(Device const& device, DeviceState const& state)
{
    if (!state.package)
    {
        return std::nullopt;
    }
    for (auto const& entry : ReadSettings(SettingsFileIn(device.PackageDataFolder(state.package->family))))
    {
        if (entry.name == L"CURI" && entry.type == SetEntry::ofString)
        {
            return ReadableValue(entry);
        }
    }
    return std::nullopt;
}

Examined LookAt(Device const& device)
{
    Examined examined;
    examined.state = std::get<DeviceState>(BrokerClient::Connect(device)->AnswerTo(DescribeDevice{}));
    examined.storedUri = StoredUri(device, examined.state);
    examined.journal = ReadJournal(device.JournalFile());
    examined.leftOver = LeftOver(examined.journal, examined.state.clock.since);
    return examined;
}

// Also of what is not there yet: as the shell names the device's folder, and what is below it.
std::string ShellPath(Device const& device, std::wstring const& path)
{
    auto below = path.substr(device.Home().size());
    auto const home = UnixPath(device.Home());
    if (home.starts_with('/'))
    {
        std::ranges::replace(below, L'\\', L'/');
    }
    return home + ToUtf8(below);
}

} // namespace

int RunDoctor(Words const& words)
{
    if (!words.empty() && words[0] != L"--json")
    {
        throw UsageError(L"unexpected argument " + words[0]);
    }
    auto const device = Device::FromEnvironment();
    auto const examined = LookAt(device);
    auto const findings = Examine(examined);
    if (words.empty())
    {
        console::WriteLine(L"device  " + FromUtf8(ShellPath(device, device.Home())));
        console::WriteLine(L"log     " +
                           (examined.state.package ? FromUtf8(ShellPath(device, AppLogOn(device))) : L"none"));
    }
    for (auto const& finding : findings)
    {
        console::WriteLine(words.empty() ? doctor::FindingText(finding) : doctor::FindingJson(finding));
    }
    if (examined.state.package)
    {
        auto const report = LogReport(device, doctor::LocalNow());
        console::WriteLine(words.empty() ? "\nBy the log: " + ReportText(report, false) : ReportJson(report));
    }
    return std::ranges::find(findings, doctor::Result::Failed, &doctor::Finding::result) == findings.end() ? 0 : 1;
}

} // namespace sim
