#include "simulator/doctor/FileFindings.h"

#include "doctor/live/ComponentFile.h"
#include "doctor/live/LogCheck.h"
#include "doctor/live/MutexCheck.h"
#include "simulator/log/AppLog.h"
#include "simulator/package/Package.h"

#include <algorithm>

namespace sim
{

namespace
{

// Whether the app must have begun a log: it was activated since the package came.
bool HasBegunLog(std::vector<Event> const& journal)
{
    auto const last = std::ranges::find_if(journal.rbegin(), journal.rend(), [](Event const& event) {
        return event.kind == L"activated" || event.kind == L"package-unregistered"; // which removes the log
    });
    return last != journal.rend() && last->kind == L"activated";
}

} // namespace

std::vector<doctor::Finding> FileFindings(Device const& device, std::vector<Event> const& journal)
{
    // The app may end at any moment, with its mutex.
    constexpr bool appRuns = false;
    auto const package = RegisteredPackage(device);
    std::vector findings = {doctor::LogFinding(AppLogOn(device), HasBegunLog(journal)),
                            doctor::MutexFinding(package.FamilyName(), appRuns)};
    if (auto const component = package.DesktopExecutable(); !component.empty())
    {
        findings.push_back(doctor::ComponentFileFinding(component));
    }
    return findings;
}

} // namespace sim
