#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <windows.h>

// watched_program LIBRARY SEMAPHORE: loads the library and releases the semaphore ten times.
// watched_program LIBRARY wait: loads the library and waits a minute.
int wmain(int count, wchar_t** arguments)
{
    constexpr int releases = 10;
    if (count != 3 || LoadLibraryW(arguments[1]) == nullptr)
    {
        return 1;
    }
    if (std::wstring_view(arguments[2]) == L"wait")
    {
        Sleep(60'000);
        return 0;
    }
    auto* const semaphore = OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, arguments[2]);
    for (int release = 0; release < releases; ++release)
    {
        ReleaseSemaphore(semaphore, 1, nullptr);
    }
    return 0;
}
