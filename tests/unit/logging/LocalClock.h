#pragma once
#include "tests/support/WrappedSystem.h"

namespace test
{

// Stops the local time of the system while it exists: at 09:30:12 on 5 January 2024, until a test sets it.
class LocalClock
{
  public:
    SYSTEMTIME now = {.wYear = 2024,
                      .wMonth = 1,
                      .wDayOfWeek = 5,
                      .wDay = 5,
                      .wHour = 9,
                      .wMinute = 30,
                      .wSecond = 12,
                      .wMilliseconds = 45};

  private:
    GetLocalTimeCall m_call{[this](auto, SYSTEMTIME* time) { *time = now; }};
};

} // namespace test
