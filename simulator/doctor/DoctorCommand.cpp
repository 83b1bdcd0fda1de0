#include "simulator/doctor/DoctorCommand.h"

#include "console/Console.h"
#include "doctor/base/JsonObject.h"
#include "doctor/cli/ExitCode.h"
#include "doctor/cli/LocalNow.h"
#include "doctor/verdict/FindingText.h"
#include "doctor/verdict/ReportJson.h"
#include "doctor/verdict/ReportText.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/client/BrokerClient.h"
#include "simulator/doctor/Examination.h"
#include "simulator/doctor/FileFindings.h"
#include "simulator/doctor/LeftOver.h"
#include "simulator/log/AppLog.h"
#include "simulator/log/LogVerdict.h"
#include "simulator/platform/Journal.h"
#include "simulator/protocol/SettingsFile.h"

#include <algorithm>
#include <iterator>

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

std::vector<doctor::Finding> Findings(Device const& device, Examined const& examined, bool hasLog)
{
    auto findings = hasLog ? FileFindings(device, examined.journal) : std::vector<doctor::Finding>();
    std::ranges::copy(Examine(examined), std::back_inserter(findings));
    return doctor::InOrderOfStages(findings);
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

void WritePlaces(Device const& device, bool hasLog, bool isJson)
{
    auto const home = ShellPath(device, device.Home());
    auto const log = hasLog ? ShellPath(device, AppLogOn(device)) : std::string();
    if (isJson)
    {
        console::WriteLine(hasLog ? doctor::JsonObject({{"device", home}, {"log", log}})
                                  : doctor::JsonObject({{"device", home}}));
        return;
    }
    console::WriteLine("device  " + home + "\nlog     " + (hasLog ? log : "none"));
}

} // namespace

int RunDoctor(Words const& words)
{
    if (!words.empty() && words[0] != L"--json")
    {
        throw UsageError(L"unexpected argument " + words[0]);
    }
    auto const isJson = !words.empty();
    auto const device = Device::FromEnvironment();
    auto const examined = LookAt(device);
    auto const hasLog = examined.state.package.has_value();
    auto const findings = Findings(device, examined, hasLog);
    WritePlaces(device, hasLog, isJson);
    for (auto const& finding : findings)
    {
        console::WriteLine(isJson ? doctor::FindingJson(finding) : doctor::FindingText(finding));
    }
    if (hasLog)
    {
        auto const report = LogReport(device, doctor::LocalNow());
        console::WriteLine(isJson ? ReportJson(report) : "\nBy the log: " + ReportText(report, false));
    }
    return static_cast<int>(doctor::ExitCodeOf(doctor::VerdictOf(findings)));
}

} // namespace sim
