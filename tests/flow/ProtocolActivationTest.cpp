#include "tests/flow/AppFlow.h"
#include "tests/support/Banner.h"

namespace
{

using test::banner;
using test::ExpectLines;

constexpr wchar_t activated[] = L"Inside OnActivated App activated by URI protocol";

class ProtocolActivation : public test::AppFlow
{
  protected:
    ProtocolActivation() { host.OpenUri(L"velmo-notification:anything"); }
};

TEST_F(ProtocolActivation, LogsItsOneLineAndExitsWithoutLaunchingAnything)
{
    RunToEnd();
    ExpectLines(Messages(), {banner, activated});
    EXPECT_TRUE(host.HasExited());
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
    EXPECT_TRUE(waits.empty());
}

TEST_F(ProtocolActivation, ExitsWithoutArgumentsToo)
{
    host.SetFault(L"ProtocolActivatedEventArgs null");
    RunToEnd();
    ExpectLines(Messages(), {banner, activated});
    EXPECT_TRUE(host.HasExited());
}

TEST_F(ProtocolActivation, EndsTheProcessWhenTheKindCannotBeRead)
{
    host.SetFault(L"ProtocolActivatedEventArgs.Kind now 0x80004005");
    RunToEnd();
    EXPECT_EQ(host.Failure(), E_FAIL);
    ExpectLines(Messages(), {banner, activated});
    EXPECT_FALSE(host.HasExited());
}

TEST_F(ProtocolActivation, EndsTheProcessWhenTheExitCannotBeHad)
{
    host.SetFault(L"CoreApplication now 0x80040154");
    RunToEnd();
    EXPECT_EQ(host.Failure(), REGDB_E_CLASSNOTREG);
    EXPECT_FALSE(host.HasExited());
}

TEST_F(ProtocolActivation, EndsTheProcessWhenTheExitFails)
{
    host.SetFault(L"CoreApplication.Exit now 0x8000FFFF");
    RunToEnd();
    EXPECT_EQ(host.Failure(), E_UNEXPECTED);
}

} // namespace
