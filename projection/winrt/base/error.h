// Exceptions for failing result codes, and the one place where an exception becomes a result code.
#pragma once
#include "winrt/base/string.h"

namespace winrt
{

struct hresult_error
{
    hresult_error() noexcept = default;
    explicit hresult_error(hresult code) noexcept : m_code(code) {}
    hresult_error(hresult code, take_ownership_from_abi_t) noexcept : m_code(code) {}
    hresult_error(hresult code, param::hstring const& message) : m_code(code), m_message(message) {}

    hresult code() const noexcept { return m_code; }
    hresult to_abi() const noexcept { return m_code; }

    // The message given, else the system's text for the code, which may be empty.
    hstring message() const;

  private:
    hresult m_code{impl::error_fail};
    hstring m_message;
};

namespace impl
{

template <int32_t Code>
struct coded_error : hresult_error
{
    coded_error() noexcept : hresult_error(hresult(Code)) {}
    coded_error(param::hstring const& message) : hresult_error(Code, message) {}
    coded_error(take_ownership_from_abi_t) noexcept : hresult_error(hresult(Code)) {}
};

} // namespace impl

struct hresult_access_denied : impl::coded_error<impl::error_access_denied>
{
    using coded_error::coded_error;
};
struct hresult_wrong_thread : impl::coded_error<impl::error_wrong_thread>
{
    using coded_error::coded_error;
};
struct hresult_not_implemented : impl::coded_error<impl::error_not_implemented>
{
    using coded_error::coded_error;
};
struct hresult_invalid_argument : impl::coded_error<impl::error_invalid_argument>
{
    using coded_error::coded_error;
};
struct hresult_out_of_bounds : impl::coded_error<impl::error_out_of_bounds>
{
    using coded_error::coded_error;
};
struct hresult_no_interface : impl::coded_error<impl::error_no_interface>
{
    using coded_error::coded_error;
};
struct hresult_class_not_available : impl::coded_error<impl::error_class_not_available>
{
    using coded_error::coded_error;
};
struct hresult_class_not_registered : impl::coded_error<impl::error_class_not_registered>
{
    using coded_error::coded_error;
};
struct hresult_changed_state : impl::coded_error<impl::error_changed_state>
{
    using coded_error::coded_error;
};
struct hresult_illegal_method_call : impl::coded_error<impl::error_illegal_method_call>
{
    using coded_error::coded_error;
};
struct hresult_illegal_state_change : impl::coded_error<impl::error_illegal_state_change>
{
    using coded_error::coded_error;
};
struct hresult_illegal_delegate_assignment : impl::coded_error<impl::error_illegal_delegate_assignment>
{
    using coded_error::coded_error;
};
struct hresult_canceled : impl::coded_error<impl::error_canceled>
{
    using coded_error::coded_error;
};

inline hstring hresult_error::message() const
{
    if (!m_message.empty())
    {
        return m_message;
    }
    wchar_t text[512];
    auto const size = impl::os::FormatMessageW(impl::os::message_of_system, nullptr,
                                               static_cast<uint32_t>(m_code.value), 0, text, 512, nullptr);
    std::wstring_view found(text, size);
    auto const last = found.find_last_not_of(L" \r\n");
    return hstring(found.substr(0, last == found.npos ? 0 : last + 1));
}

[[noreturn, gnu::noinline]] inline void throw_hresult(hresult result)
{
    switch (result)
    {
    case impl::error_bad_alloc:
        throw std::bad_alloc();
    case impl::error_access_denied:
        throw hresult_access_denied();
    case impl::error_wrong_thread:
        throw hresult_wrong_thread();
    case impl::error_not_implemented:
        throw hresult_not_implemented();
    case impl::error_invalid_argument:
        throw hresult_invalid_argument();
    case impl::error_out_of_bounds:
        throw hresult_out_of_bounds();
    case impl::error_no_interface:
        throw hresult_no_interface();
    case impl::error_class_not_available:
        throw hresult_class_not_available();
    case impl::error_class_not_registered:
        throw hresult_class_not_registered();
    case impl::error_changed_state:
        throw hresult_changed_state();
    case impl::error_illegal_method_call:
        throw hresult_illegal_method_call();
    case impl::error_illegal_state_change:
        throw hresult_illegal_state_change();
    case impl::error_illegal_delegate_assignment:
        throw hresult_illegal_delegate_assignment();
    case impl::error_canceled:
        throw hresult_canceled();
    default:
        throw hresult_error(result);
    }
}

[[noreturn]] inline void terminate() noexcept
{
    std::terminate();
}

// Called inside a catch block: the result code for the exception that is being handled. An exception of any other
// kind cannot be told to a caller across the binary edge, and ends the process.
[[gnu::noinline]] inline hresult to_hresult() noexcept
{
    try
    {
        throw;
    }
    catch (hresult_error const& error)
    {
        return error.to_abi();
    }
    catch (std::bad_alloc const&)
    {
        return impl::error_bad_alloc;
    }
    catch (std::out_of_range const&)
    {
        return impl::error_out_of_bounds;
    }
    catch (std::invalid_argument const&)
    {
        return impl::error_invalid_argument;
    }
    catch (std::exception const&)
    {
        return impl::error_fail;
    }
    catch (...)
    {
        terminate();
    }
}

namespace impl
{

// Codes of the system that are negative are result codes already.
constexpr hresult hresult_from_win32(uint32_t error) noexcept
{
    auto const code = static_cast<int32_t>(error);
    return code <= 0 ? code : static_cast<int32_t>((error & 0x0000FFFF) | 0x80070000);
}

} // namespace impl

// A failure without a code is still a failure.
inline hresult hresult_from_last_error() noexcept
{
    auto const error = impl::os::GetLastError();
    return error == impl::os::no_error ? hresult(impl::error_fail) : impl::hresult_from_win32(error);
}

[[noreturn]] inline void throw_last_error()
{
    throw_hresult(hresult_from_last_error());
}

inline void check_win32(uint32_t error)
{
    if (error != impl::os::no_error)
    {
        throw_hresult(impl::hresult_from_win32(error));
    }
}

template <typename T>
T check_bool(T result)
{
    if (!result)
    {
        throw_last_error();
    }
    return result;
}

template <typename T>
T* check_pointer(T* pointer)
{
    if (!pointer)
    {
        throw_last_error();
    }
    return pointer;
}

} // namespace winrt
