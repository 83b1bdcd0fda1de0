// A test that fails, for another one to look at what it says.
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(Failing, KeepsItsFiles)
{
    test::TemporaryFolder const folder;
    test::WriteBytes(folder / L"some.log", test::Utf16(L"01/05/24 09:30:12:045 | [INFO] | a | b | c | d | e | f | g | "
                                                       L"what was logged\r\n"));
    FAIL();
}
