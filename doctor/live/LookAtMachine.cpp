#include "doctor/live/LookAtMachine.h"

#include "doctor/live/AppService.h"
#include "doctor/live/ComponentCheck.h"
#include "doctor/live/LogCheck.h"
#include "doctor/live/MutexCheck.h"
#include "doctor/live/PackageCheck.h"
#include "doctor/live/ServiceCheck.h"
#include "doctor/verdict/Report.h"
#include "helper/PackageFacts.h"

namespace doctor
{

std::vector<Finding> LookAtMachine(LiveOptions const& options)
{
    auto const service = ConnectingAppService();
    return LookAtMachine(options, *service);
}

// The connection stays open meanwhile, so that the app runs while its log and mutex are looked at.
std::vector<Finding> LookAtMachine(LiveOptions const& options, AppService& service)
{
    std::vector<Finding> findings;
    auto const add = [&](std::vector<Finding> const& more) {
        findings.insert(findings.end(), more.begin(), more.end());
    };
    auto const packages = PackagesOfFamily(packageFamilyName);
    auto const asked = AskService(service, options);
    add({PackageFinding(packages, asked.status)});
    add(asked.findings);
    add({LogFinding(options.log ? *options.log : LogPathOf(packageFamilyName), asked.appRuns)});
    add({MutexFinding(packageFamilyName, asked.appRuns)});
    add({ComponentFinding(packages)});
    return InOrderOfStages(findings);
}

} // namespace doctor
