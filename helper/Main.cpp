#include "console/Console.h"
#include "helper/Arguments.h"
#include "helper/Commands.h"
#include "helper/FailureText.h"
#include "utils/Utf8.h"

#include <winrt/base.h>

namespace
{

using helper::Outcome;

Outcome RunCommandLine(std::vector<std::wstring> const& words)
try
{
    auto const arguments = helper::ParseArguments(words);
    if (!arguments)
    {
        console::WriteLine(helper::helpText);
        return Outcome::Done;
    }
    winrt::init_apartment();
    return helper::Run(*arguments);
}
catch (helper::UsageError const& error)
{
    console::WriteErrorLine(L"helper: " + zant::ToWide(error.what()).value_or(L"usage error") +
                            L"\nhelper help lists the commands");
    return Outcome::UsageError;
}
catch (winrt::hresult_error const& error)
{
    console::WriteErrorLine(L"helper: " + helper::FailureText(error));
    return Outcome::NoAnswer;
}

} // namespace

// The runtime calls it by this name.
int wmain(int count, wchar_t** arguments) // NOLINT(misc-use-internal-linkage)
{
    return static_cast<int>(RunCommandLine({arguments + 1, arguments + count}));
}
