#include "simulator/cli/Commands.h"

#include <windows.h>

#include <shellapi.h>

int main()
{
    int count = 0;
    auto* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    sim::Words const words(arguments + 1, arguments + count);
    LocalFree(static_cast<void*>(arguments));
    return sim::RunCommand(words);
}
