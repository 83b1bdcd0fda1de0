#include "doctor/base/SystemText.h"

#include "doctor/base/Error.h"
#include "tests/support/WrappedCall.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

REPLACEABLE(FormatMessageCall, FormatMessageW);

} // namespace test

WRAP(FormatMessageCall, FormatMessageW);

namespace
{

// The system's message for error 5 is the text.
test::FormatMessageCall::Function Saying(std::wstring_view message)
{
    return [=](auto const&, DWORD flags, void const*, DWORD code, DWORD, wchar_t* text, DWORD size, va_list*) {
        EXPECT_EQ(flags, static_cast<DWORD>(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS));
        EXPECT_EQ(code, 5u);
        EXPECT_LT(message.size(), size);
        std::ranges::copy(message, text);
        return static_cast<DWORD>(message.size());
    };
}

} // namespace

TEST(SystemText, IsInTheSystemsLanguageWhateverItsCodePage)
{
    test::FormatMessageCall const says(Saying(L"Dost\u0119p zablokowany. \u62D2\r\n"));
    EXPECT_EQ(doctor::SystemText(5), "Dost\u0119p zablokowany. \u62D2 (5)");
}

TEST(SystemText, EndsWithoutAFullStop)
{
    test::FormatMessageCall const says(Saying(L"Access is denied.\r\n"));
    EXPECT_EQ(doctor::SystemText(5), "Access is denied (5)");
    SetLastError(5);
    try
    {
        doctor::ThrowLastError(L"C:\\KZEB.log");
        FAIL();
    }
    catch (doctor::Error const& error)
    {
        EXPECT_EQ(std::string_view(error.what()), "C:\\KZEB.log: Access is denied (5)");
    }
}

TEST(SystemText, HasTheNumberAlsoWhereTheSystemHasNoWords)
{
    test::FormatMessageCall const says(Saying(L""));
    EXPECT_EQ(doctor::SystemText(5), "unknown error (5)");
}
