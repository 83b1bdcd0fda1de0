#pragma once
#include "explore/log/Clock.h"
#include "explore/log/Kernel.h"
#include "tests/support/WrappedSystem.h"

namespace explore
{

// The system's calls for time, and for its text, which depends on nothing else and so awaits no turn.
class ClockCalls
{
  public:
    ClockCalls(Kernel& kernel, Clock& clock) : m_kernel(kernel), m_clock(clock) {}

  private:
    // Like the formatters: the length with its terminator; 0 for a picture that is not known.
    static int Copy(std::wstring const& text, wchar_t* buffer, int size);

    Kernel& m_kernel;
    Clock& m_clock;

    test::GetSystemTimeCall m_systemTime{[this](auto, FILETIME* time) {
        m_kernel.Call("GetSystemTime", [&] {
            *time = m_clock.Utc();
            m_kernel.Note(m_clock.Seconds());
        });
    }};
    test::GetLocalTimeCall m_localTime{[this](auto, SYSTEMTIME* time) {
        m_kernel.Call("GetLocalTime", [&] {
            *time = m_clock.Local();
            m_kernel.Note(m_clock.Seconds());
        });
    }};
    test::GetDateFormatCall m_dateFormat{[](auto, auto, DWORD, SYSTEMTIME const* time, wchar_t const* picture,
                                            wchar_t* text, int size,
                                            auto) { return Copy(FormattedDate(*time, picture), text, size); }};
    test::GetTimeFormatCall m_timeFormat{[](auto, auto, DWORD, SYSTEMTIME const* time, wchar_t const* picture,
                                            wchar_t* text,
                                            int size) { return Copy(FormattedTime(*time, picture), text, size); }};
};

} // namespace explore
