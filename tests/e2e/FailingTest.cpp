// Tests that fail, for another one to look at what they say. Those that end the program are run one by one.
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <exception>
#include <gtest/gtest.h>
#include <windows.h>

TEST(Failing, KeepsItsFiles)
{
    test::TemporaryFolder const folder;
    test::WriteBytes(folder / L"some.log", test::Utf16(L"01/05/24 09:30:12:045 | [INFO] | a | b | c | d | e | f | 7 | "
                                                       L"what was logged\r\n"));
    FAIL();
}

TEST(Failing, DISABLED_Hangs)
{
    SleepEx(INFINITE, FALSE);
}

TEST(Failing, DISABLED_Crashes)
{
    RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

TEST(Failing, DISABLED_Terminates)
{
    std::terminate();
}

TEST(Failing, DISABLED_Exits)
{
    std::exit(0);
}
