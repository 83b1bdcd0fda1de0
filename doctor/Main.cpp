#include "console/Colours.h"
#include "doctor/CommandLine.h"
#include "doctor/base/Console.h"
#include "doctor/cli/LocalNow.h"
#include "doctor/live/LogCheck.h"
#include "doctor/live/LookAtMachine.h"
#include "helper/PackageFacts.h"
#include "utils/Utf8.h"

#include <span>
#include <windows.h>

namespace
{

constexpr DWORD pauseMilliseconds = 200;

}

// The runtime calls it by this name.
int wmain(int count, wchar_t** arguments) // NOLINT(misc-use-internal-linkage)
{
    std::vector<std::string> words;
    for (auto const* word : std::span(arguments + 1, arguments + count))
    {
        words.push_back(zant::ToUtf8(word).value_or(""));
    }
    doctor::Surroundings const surroundings = {
        .write = doctor::WriteLine,
        .writeError = doctor::WriteErrorLine,
        .pause = [] { Sleep(pauseMilliseconds); },
        .now = doctor::LocalNow,
        .takesColours = console::TakesColours,
        .look = [](doctor::LiveOptions const& options) { return doctor::LookAtMachine(options); },
        .ownLog = [] { return doctor::LogPathOf(packageFamilyName); }};
    return static_cast<int>(doctor::RunCommandLine(std::move(words), surroundings));
}
