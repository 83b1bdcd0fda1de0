#include "doctor/base/Console.h"

#include "console/Console.h"
#include "doctor/base/Error.h"
#include "doctor/base/SystemText.h"

#include <windows.h>

namespace doctor
{

void WriteLine(std::string_view text)
{
    if (!console::WriteLine(text))
    {
        throw Error("standard output: " + SystemText(GetLastError()));
    }
}

void WriteErrorLine(std::string_view text)
{
    console::WriteErrorLine(text);
}

} // namespace doctor
