#include "doctor/base/Console.h"

#include "console/Console.h"
#include "doctor/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/ConsoleMode.h"
#include "utils/UniqueHandle.h"

#include <functional>
#include <gtest/gtest.h>

namespace test
{

REPLACEABLE(WriteConsoleCall, WriteConsoleW);

} // namespace test

WRAP(WriteConsoleCall, WriteConsoleW);

namespace
{

class Console : public testing::Test
{
  protected:
    // What comes to a standard stream while that is done.
    std::string Written(DWORD stream, std::function<void()> const& write, DWORD access = GENERIC_WRITE)
    {
        auto const path = m_folder / L"stream.txt";
        zant::UniqueHandle const file(
            CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr));
        auto* const before = GetStdHandle(stream);
        SetStdHandle(stream, file.Get());
        write();
        SetStdHandle(stream, before);
        return test::ReadBytes(path);
    }

    test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(Console, TakesLinesOfEitherEncodingAsUtf8)
{
    EXPECT_EQ(Written(STD_OUTPUT_HANDLE,
                      [] {
                          EXPECT_TRUE(console::WriteLine("\u00E9n"));
                          EXPECT_TRUE(console::WriteLine(L"tw\u00F6 \U0001F600\nlines"));
                          EXPECT_TRUE(console::WriteLine(L"un\xD83Dpaired"));
                          doctor::WriteLine("");
                      }),
              "\u00E9n\ntw\u00F6 \U0001F600\nlines\nun\uFFFDpaired\n\n");
}

TEST_F(Console, HasAStreamOfItsOwnForErrors)
{
    EXPECT_EQ(Written(STD_ERROR_HANDLE,
                      [] {
                          EXPECT_TRUE(console::WriteErrorLine("\u00E9n"));
                          EXPECT_TRUE(console::WriteErrorLine(L"tw\u00F6"));
                          doctor::WriteErrorLine("three");
                      }),
              "\u00E9n\ntw\u00F6\nthree\n");
}

TEST_F(Console, OfAPersonGetsUtf16InOneWrite)
{
    std::wstring shown;
    test::GetConsoleModeCall const isConsole([](auto&&...) { return TRUE; });
    test::WriteConsoleCall const write(
        [&](auto&&, HANDLE handle, void const* text, DWORD length, DWORD* written, void*) {
            EXPECT_EQ(handle, GetStdHandle(STD_OUTPUT_HANDLE));
            shown += std::wstring(static_cast<wchar_t const*>(text), length) + L"|";
            *written = length;
            return TRUE;
        });
    EXPECT_EQ(Written(STD_OUTPUT_HANDLE,
                      [] {
                          EXPECT_TRUE(console::WriteLine("\u00E9\U0001F600"));
                          EXPECT_TRUE(console::WriteLine(L"\u2026"));
                      }),
              "");
    EXPECT_EQ(shown, L"\u00E9\U0001F600\n|\u2026\n|");
}

TEST_F(Console, OfAPersonThatTakesNoLineIsAFailure)
{
    test::GetConsoleModeCall const isConsole([](auto&&...) { return TRUE; });
    test::WriteConsoleCall const write([](auto&&...) { return FALSE; });
    EXPECT_FALSE(console::WriteLine("one"));
    EXPECT_FALSE(console::WriteErrorLine(L"one"));
}

TEST_F(Console, OfAPersonGetsWhatIsNoTextAsItIs)
{
    test::GetConsoleModeCall const isConsole([](auto&&...) { return TRUE; });
    EXPECT_EQ(Written(STD_OUTPUT_HANDLE, [] { EXPECT_TRUE(console::WriteLine("\xFF")); }), "\xFF\n");
}

TEST_F(Console, SaysThatAStreamTakesNoLine)
{
    Written(
        STD_OUTPUT_HANDLE,
        [] {
            EXPECT_FALSE(console::WriteLine("one"));
            EXPECT_FALSE(console::WriteLine(L"one"));
            EXPECT_THROW(doctor::WriteLine("one"), doctor::Error);
        },
        GENERIC_READ);
    Written(
        STD_ERROR_HANDLE,
        [] {
            EXPECT_FALSE(console::WriteErrorLine("one"));
            EXPECT_FALSE(console::WriteErrorLine(L"one"));
            doctor::WriteErrorLine("one"); // there is nowhere left to say it
        },
        GENERIC_READ);
}
