#include "app/App.h"

#include <exception>
#include <windows.h>

namespace
{

// Without it an exception that leaves main ends in the runtime's abort, which in a program without a console may put
// up a message box and wait. Nobody is there to close it.
[[noreturn]] void EndAtOnce() noexcept
{
    RaiseFailFastException(nullptr, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
    __builtin_unreachable();
}

} // namespace

// The platform passes only its server name in the arguments. What it throws is handled nowhere: the process ends.
int main(int /*argc*/, char** /*argv*/) // NOLINT(bugprone-exception-escape)
{
    std::set_terminate(EndAtOnce);
    // The framework keeps the application object alive; the reference made here goes at once.
    winrt::Windows::UI::Xaml::Application::Start([](auto&&) { winrt::make<VelmoNotificationClient::App>(); });
    return 0;
}
