#include "app/App.h"

#include <exception>
#include <windows.h>

namespace
{

// By default, an exception that leaves main ends in the C runtime's abort, which in a program without a console may
// show a message box that no one closes.
[[noreturn]] void EndAtOnce() noexcept
{
    RaiseFailFastException(nullptr, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
    __builtin_unreachable();
}

} // namespace

// The platform passes only its server name in the arguments. Uncaught exceptions end the process.
int main(int /*argc*/, char** /*argv*/) // NOLINT(bugprone-exception-escape)
{
    std::set_terminate(EndAtOnce);
    // The framework keeps the application object alive; the reference returned here is released at once.
    winrt::Windows::UI::Xaml::Application::Start([](auto&&) { winrt::make<VelmoNotificationClient::App>(); });
    return 0;
}
