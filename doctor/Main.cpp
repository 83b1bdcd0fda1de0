#include "doctor/CommandLine.h"
#include "doctor/base/Console.h"
#include "doctor/cli/LocalNow.h"
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
    doctor::Surroundings const surroundings = {doctor::WriteLine, doctor::WriteErrorLine,
                                               [] { Sleep(pauseMilliseconds); }, doctor::LocalNow};
    return static_cast<int>(doctor::RunCommandLine(std::move(words), surroundings));
}
