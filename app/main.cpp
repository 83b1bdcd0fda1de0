#include "app/App.h"

#include <exception>
#include <windows.h>

// What the C++ library calls for an exception that leaves main, unless told otherwise. Its own would print the
// exception's type, for which it brings 65 KB along, and end in the C runtime's abort, which in a program without a
// console may show a message box that no one closes.
void __gnu_cxx::__verbose_terminate_handler()
{
    RaiseFailFastException(nullptr, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
    __builtin_unreachable();
}

// The platform passes only its server name in the arguments. Uncaught exceptions end the process.
int main(int /*argc*/, char** /*argv*/) // NOLINT(bugprone-exception-escape)
{
    // The framework keeps the application object alive; the reference returned here is released at once.
    winrt::Windows::UI::Xaml::Application::Start([](auto&&) { winrt::make<VelmoNotificationClient::App>(); });
    return 0;
}
