#pragma once
#include "logging/LogTargetDefault.h"
#include "tests/unit/logging/LogFixture.h"

namespace test
{

// A target on the test's own log.
class LogTargetDefaultTest : public LogFixture
{
  protected:
    zant::LogTargetDefault& Opened()
    {
        Configure(target);
        EXPECT_TRUE(target.Open());
        return target;
    }

    zant::LogTargetDefault target;
};

} // namespace test
