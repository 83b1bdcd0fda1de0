// An app that crashes in the way that VELMO_CRASH names, as soon as the platform knows it.
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <windows.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace
{

int* volatile g_nowhere = nullptr;
void (*volatile g_noFunction)() = nullptr;
int volatile g_isPast = 0; // set behind a call, for it not to become a jump

[[gnu::noinline]] void WriteToNowhere()
{
    *g_nowhere = 1; // the write
}

[[gnu::noinline]] void CallNowhere()
{
    g_noFunction(); // the call
    g_isPast = 1;
}

[[gnu::noinline]] void ThrowUncaught()
{
    throw std::runtime_error("nobody catches this"); // the throw
}

} // namespace

// As the product ends.
void __gnu_cxx::__verbose_terminate_handler()
{
    RaiseFailFastException(nullptr, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);
    g_isPast = 1;
}

int main()
{
    winrt::init_apartment();
    winrt::Windows::Foundation::Collections::ValueSet const aClassOfThePlatform;
    std::string_view const way = std::getenv("VELMO_CRASH");
    if (way == "write")
    {
        WriteToNowhere();
    }
    if (way == "call")
    {
        CallNowhere();
    }
    ThrowUncaught();
    return 0;
}
