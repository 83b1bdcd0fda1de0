#include <windows.h>

// Runs until a test ends it; not for long if that test has failed.
int main()
{
    Sleep(60'000);
}
