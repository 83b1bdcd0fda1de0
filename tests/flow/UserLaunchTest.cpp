#include "tests/flow/AppFlow.h"
#include "tests/flow/LogRecorder.h"
#include "tests/support/Banner.h"

#include <atomic>
#include <winrt/Windows.UI.Xaml.Controls.h>

namespace
{

using test::banner;
using test::ExpectLines;

constexpr wchar_t insideOnLaunched[] = L"Inside OnLaunched";
constexpr wchar_t goingToLaunch[] = L"Going to launch full trust app to launch HOV";
constexpr wchar_t launchDone[] = L"Launch Done !! ";
constexpr wchar_t goingToExit[] = L"Going to exit";

// A window's content that is no page, and counts how often it is asked whether it is one.
struct Content : winrt::implements<Content, winrt::Windows::Foundation::IInspectable>
{
    explicit Content(std::atomic<int>& questions) : m_questions(questions) {}

  protected:
    std::int32_t query_interface_tearoff(winrt::guid const& id, void** object) const noexcept override
    {
        m_questions += id == winrt::guid_of<winrt::Windows::UI::Xaml::Controls::IPage>() ? 1 : 0;
        return implements::query_interface_tearoff(id, object);
    }

  private:
    std::atomic<int>& m_questions;
};

class UserLaunch : public test::AppFlow
{
  protected:
    UserLaunch() { host.Launch(); }
};

TEST_F(UserLaunch, LogsItsFourLinesInOrderAndExits)
{
    Start();
    auto const launch = WaitForLaunch();
    launch.Complete();
    EndWait();
    WaitForEnd();
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, launchDone, goingToExit});
    EXPECT_TRUE(host.HasExited());
    EXPECT_EQ(startResult, 0);
}

TEST_F(UserLaunch, StartsTheDesktopComponentOnceWithItsParameterGroup)
{
    Start();
    auto const launch = WaitForLaunch();
    EXPECT_EQ(launch.group, L"LaunchHOV");
    EXPECT_EQ(launch.application, L"");
    launch.Complete();
    EndWait();
    WaitForEnd();
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
}

TEST_F(UserLaunch, WaitsThreeSecondsAlsoWhenTheLaunchIsDoneEarlier)
{
    Start();
    WaitForLaunch().Complete();
    EndWait();
    WaitForEnd();
    EXPECT_EQ(waits, std::vector<DWORD>{3000});
}

TEST_F(UserLaunch, ExitsWithoutTheDoneLineWhenTheLaunchTakesLonger)
{
    Start();
    auto const launch = WaitForLaunch();
    EndWait();
    WaitForEnd();
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, goingToExit});
    EXPECT_TRUE(host.HasExited());
}

TEST_F(UserLaunch, LogsThatTheLaunchIsDoneOnAnotherThreadAlsoWhenItIsDoneAtOnce)
{
    host.SetFault(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync ended");
    Start();
    auto const launch = host.WaitForLaunch();
    test::LogRecorder const log([] { return 0u; });
    launch.Complete();
    auto const done = log.WaitForThreadOf(launchDone);
    EndWait();
    EXPECT_NE(done, log.WaitForThreadOf(goingToExit));
    WaitForEnd();
    test::PoolWatch::WaitUntilIdle(); // before the log is closed
}

TEST_F(UserLaunch, KeepsTheAppAliveUntilTheLaunchHasCompleted)
{
    Start();
    auto const launch = WaitForLaunch();
    EndWait();
    WaitForEnd();
    EXPECT_TRUE(app.get());
    launch.Complete();
    EXPECT_FALSE(app.get());
}

class UserLaunchFailingLater : public UserLaunch, public testing::WithParamInterface<HRESULT>
{
};

TEST_P(UserLaunchFailingLater, HasNoLineAndIsNotRetriedAndTheAppWaitsAndExits)
{
    Start();
    WaitForLaunch().Complete(GetParam());
    EndWait();
    WaitForEnd();
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, goingToExit});
    EXPECT_EQ(waits, std::vector<DWORD>{3000});
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
    EXPECT_TRUE(host.HasExited());
}

INSTANTIATE_TEST_SUITE_P(Results, UserLaunchFailingLater,
                         testing::Values(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), HRESULT_FROM_WIN32(ERROR_CANCELLED),
                                         E_OUTOFMEMORY, E_ABORT));

TEST_F(UserLaunch, EndsTheProcessWhenTheLaunchFailsAtOnce)
{
    host.SetFault(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync now 0x80070490");
    RunToEnd();
    EXPECT_EQ(host.Failure(), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch});
    EXPECT_TRUE(waits.empty());
    EXPECT_FALSE(host.HasExited());
}

TEST_F(UserLaunch, EndsTheProcessWhenTheLauncherCannotBeHad)
{
    host.SetFault(L"FullTrustProcessLauncher now 0x80040154");
    RunToEnd();
    EXPECT_EQ(host.Failure(), REGDB_E_CLASSNOTREG);
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch});
}

TEST_F(UserLaunch, EndsTheProcessWhenTheLaunchGivesNoOperation)
{
    host.SetFault(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync null");
    RunToEnd();
    EXPECT_EQ(host.Failure(), E_POINTER);
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch});
}

TEST_F(UserLaunch, EndsTheProcessWhenTheExitCannotBeHad)
{
    host.SetFault(L"CoreApplication now 0x80040154");
    Start();
    WaitForLaunch().Complete();
    EndWait();
    WaitForEnd();
    EXPECT_EQ(host.Failure(), REGDB_E_CLASSNOTREG);
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, launchDone, goingToExit});
}

TEST_F(UserLaunch, AsksTheWindowsContentWhetherItIsAPageAndGoesOnThoughItIsNone)
{
    std::atomic<int> questions = 0;
    host.SetWindowContent(winrt::make<Content>(questions));
    Start();
    WaitForLaunch().Complete();
    EndWait();
    WaitForEnd();
    EXPECT_EQ(questions, 1);
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, launchDone, goingToExit});
}

TEST_F(UserLaunch, GoesOnWithoutAWindow)
{
    host.SetFault(L"Window.Current null");
    Start();
    WaitForLaunch().Complete();
    EndWait();
    WaitForEnd();
    ExpectLines(Messages(), {banner, insideOnLaunched, goingToLaunch, launchDone, goingToExit});
}

TEST_F(UserLaunch, EndsTheProcessWhenTheWindowCannotBeLookedAt)
{
    host.SetFault(L"Window.Content now 0x8000FFFF");
    RunToEnd();
    EXPECT_EQ(host.Failure(), E_UNEXPECTED);
    ExpectLines(Messages(), {banner, insideOnLaunched});
}

} // namespace
