#include "tests/support/Terminated.h"

#include <windows.h>
#include <winrt/base.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;

namespace
{

// The code that an exception turns into at the binary edge.
template <typename Throw>
int32_t CodeOf(Throw thrower)
{
    try
    {
        thrower();
    }
    catch (...)
    {
        return to_hresult();
    }
    return 0;
}

template <typename Error>
void ExpectMapped(uint32_t code)
{
    auto const value = static_cast<int32_t>(code);
    EXPECT_THROW(check_hresult(value), Error);
    EXPECT_EQ(CodeOf([&] { check_hresult(value); }), value);
    EXPECT_EQ(CodeOf([] { throw Error(); }), value);
}

} // namespace

TEST(Errors, EachCodeHasItsException)
{
    ExpectMapped<hresult_access_denied>(0x80070005);
    ExpectMapped<hresult_wrong_thread>(0x8001010E);
    ExpectMapped<hresult_not_implemented>(0x80004001);
    ExpectMapped<hresult_invalid_argument>(0x80070057);
    ExpectMapped<hresult_out_of_bounds>(0x8000000B);
    ExpectMapped<hresult_no_interface>(0x80004002);
    ExpectMapped<hresult_class_not_available>(0x80040111);
    ExpectMapped<hresult_class_not_registered>(0x80040154);
    ExpectMapped<hresult_changed_state>(0x8000000C);
    ExpectMapped<hresult_illegal_method_call>(0x8000000E);
    ExpectMapped<hresult_illegal_state_change>(0x8000000D);
    ExpectMapped<hresult_illegal_delegate_assignment>(0x80000018);
    ExpectMapped<hresult_canceled>(0x800704C7);
    ExpectMapped<std::bad_alloc>(0x8007000E);
}

TEST(Errors, OtherCodesKeepTheirNumber)
{
    constexpr auto notFound = static_cast<int32_t>(0x80070490);
    EXPECT_EQ(CodeOf([] { check_hresult(notFound); }), notFound);
    EXPECT_THROW(check_hresult(notFound), hresult_error);
}

TEST(Errors, SuccessCodesPass)
{
    EXPECT_EQ(check_hresult(0), 0);
    EXPECT_EQ(check_hresult(1), 1);
}

TEST(Errors, ExpectedFailuresPass)
{
    EXPECT_NO_THROW(check_hresult_allow(E_FAIL, E_FAIL));
    EXPECT_THROW(check_hresult_allow(E_FAIL, E_INVALIDARG), hresult_error);
}

TEST(Errors, StandardExceptionsHaveTheirCodes)
{
    EXPECT_EQ(CodeOf([] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(CodeOf([] { throw std::out_of_range("x"); }), static_cast<int32_t>(0x8000000B));
    EXPECT_EQ(CodeOf([] { throw std::invalid_argument("x"); }), E_INVALIDARG);
    EXPECT_EQ(CodeOf([] { throw std::runtime_error("x"); }), E_FAIL);
}

TEST(Errors, AGivenMessageIsKept)
{
    EXPECT_EQ(hresult_access_denied(L"not you").message(), L"not you");
    EXPECT_EQ(hresult_error(E_FAIL, L"broken").message(), L"broken");
    EXPECT_EQ(hresult_error(E_FAIL, L"broken").code(), E_FAIL);
}

TEST(Errors, WithoutOneTheSystemsMessageIsGiven)
{
    auto const message = hresult_access_denied().message();
    ASSERT_FALSE(message.empty());
    EXPECT_NE(message.back(), L'\n');
    EXPECT_NE(message.back(), L'\r');
}

TEST(Errors, AnUnknownCodeHasNoMessage)
{
    EXPECT_EQ(hresult_error(static_cast<int32_t>(0xA0001234)).message(), L"");
}

TEST(Errors, LastErrorBecomesACode)
{
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_THROW(throw_last_error(), hresult_access_denied);
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_THROW(check_bool(false), hresult_access_denied);
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_THROW(check_pointer(static_cast<void*>(nullptr)), hresult_access_denied);
    EXPECT_THROW(check_win32(ERROR_ACCESS_DENIED), hresult_access_denied);
}

TEST(Errors, AFailureWithoutACodeIsStillAFailure)
{
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(CodeOf([] { throw_last_error(); }), E_FAIL);
}

TEST(Errors, ChecksGiveBackWhatTheyChecked)
{
    int value = 1;
    EXPECT_EQ(check_pointer(&value), &value);
    EXPECT_EQ(check_bool(7), 7);
    EXPECT_NO_THROW(check_win32(ERROR_SUCCESS));
}

TEST(ErrorsDeathTest, AForeignExceptionAtTheEdgeEndsTheProcess)
{
    EXPECT_EXIT(EndsWhenTerminated([] { CodeOf([] { throw 1; }); }), testing::ExitedWithCode(terminatedCode), "");
}
