#include "doctor/base/OutputFile.h"

#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedCall.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

REPLACEABLE(WriteFileCall, WriteFile);

} // namespace test

WRAP(WriteFileCall, WriteFile);

TEST(OutputFile, ReplacesWhatWasThere)
{
    test::TemporaryFolder const folder;
    auto const path = folder / L"page.html";
    test::WriteBytes(path, "something longer");
    {
        doctor::OutputFile const file(path);
        file.Write("one ");
        file.Write("two");
    }
    EXPECT_EQ(test::ReadBytes(path), "one two");
}

TEST(OutputFile, SaysWhyItCannotBeMade)
{
    test::TemporaryFolder const folder;
    try
    {
        doctor::OutputFile const file(folder / L"missing\\page.html");
        FAIL();
    }
    catch (doctor::Error const& error)
    {
        EXPECT_NE(std::string(error.what()).find("page.html: "), std::string::npos) << error.what();
        EXPECT_TRUE(std::string(error.what()).ends_with("(3)")) << error.what();
    }
}

TEST(OutputFile, SaysWhyItCannotBeWritten)
{
    test::TemporaryFolder const folder;
    doctor::OutputFile const file(folder / L"page.html");
    test::WriteFileCall const fails([](auto const&...) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    });
    try
    {
        file.Write("text");
        FAIL();
    }
    catch (doctor::Error const& error)
    {
        EXPECT_TRUE(std::string(error.what()).ends_with("(112)")) << error.what();
    }
}
