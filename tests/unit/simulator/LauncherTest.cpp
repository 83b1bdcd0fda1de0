#include "simulator/base/Handle.h"
#include "simulator/testing/LocalDevice.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <objidl.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>

using winrt::Windows::ApplicationModel::FullTrustProcessLauncher;
using winrt::Windows::Foundation::AsyncStatus;
using winrt::Windows::Foundation::IAsyncAction;

namespace
{

constexpr auto denied = static_cast<std::int32_t>(0x80070005);

// How an action ended, and in which apartment that was told.
class Ending
{
  public:
    explicit Ending(IAsyncAction const& action) : m_told(std::make_shared<Told>())
    {
        action.Completed([told = m_told](auto&&, AsyncStatus status) {
            APTTYPEQUALIFIER qualifier{};
            CoGetApartmentType(&told->apartment, &qualifier);
            told->status = status;
            SetEvent(told->isThere.Get());
        });
    }

    // Waits for it.
    AsyncStatus Status() const
    {
        WaitForSingleObject(m_told->isThere.Get(), INFINITE);
        return m_told->status;
    }

    APTTYPE Apartment() const { return m_told->apartment; }

    bool IsThere() const { return WaitForSingleObject(m_told->isThere.Get(), 0) == WAIT_OBJECT_0; }

  private:
    struct Told
    {
        sim::Handle isThere{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
        AsyncStatus status{};
        APTTYPE apartment{};
    };

    std::shared_ptr<Told> m_told;
};

class Launcher : public testing::Test
{
  protected:
    static IAsyncAction Launch()
    {
        return FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(L"Group");
    }

    void SetFault(std::wstring const& rest)
    {
        m_host.SetFault(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync " + rest);
    }

    sim::LocalDevice m_host;
};

} // namespace

TEST_F(Launcher, CompletesOnAThreadOfTheMultiThreadedApartment)
{
    auto const action = Launch();
    Ending const ending(action);
    auto const launch = m_host.WaitForLaunch();
    EXPECT_EQ(launch.group, L"Group");
    EXPECT_EQ(launch.application, L"");
    EXPECT_EQ(action.Status(), AsyncStatus::Started);
    EXPECT_THROW(action.GetResults(), winrt::hresult_illegal_method_call);
    launch.Complete();
    ASSERT_TRUE(ending.IsThere()); // Complete has waited for the handler
    EXPECT_EQ(ending.Status(), AsyncStatus::Completed);
    EXPECT_EQ(ending.Apartment(), APTTYPE_MTA);
    action.GetResults();
}

TEST_F(Launcher, PassesOnWhatThePlatformAnswered)
{
    auto const action = Launch();
    m_host.WaitForLaunch().Complete(denied);
    EXPECT_EQ(action.Status(), AsyncStatus::Error);
    EXPECT_EQ(action.ErrorCode(), denied);
    EXPECT_THROW(action.GetResults(), winrt::hresult_access_denied);
}

TEST_F(Launcher, CallsAHandlerAtOnceThatComesAfterTheEnd)
{
    auto const action = Launch();
    m_host.WaitForLaunch().Complete();
    Ending const ending(action);
    ASSERT_TRUE(ending.IsThere());
    EXPECT_EQ(ending.Status(), AsyncStatus::Completed);
    EXPECT_THROW(action.Completed([](auto&&...) {}), winrt::hresult_illegal_delegate_assignment);
}

TEST_F(Launcher, HasFourWays)
{
    FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
    EXPECT_EQ(m_host.WaitForLaunch().group, std::nullopt);
    FullTrustProcessLauncher::LaunchFullTrustProcessForAppAsync(L"App");
    auto const forApp = m_host.WaitForLaunch();
    EXPECT_EQ(forApp.application, L"App");
    EXPECT_EQ(forApp.group, std::nullopt);
    FullTrustProcessLauncher::LaunchFullTrustProcessForAppAsync(L"App", L"Group");
    EXPECT_EQ(m_host.WaitForLaunch().group, L"Group");
    Launch();
    EXPECT_EQ(m_host.WaitForLaunch().group, L"Group");
}

TEST_F(Launcher, FailsAtOnceOnRequest)
{
    SetFault(L"now 0x80070005 1");
    EXPECT_THROW(Launch(), winrt::hresult_access_denied);
    EXPECT_EQ(m_host.UnfetchedLaunches(), 0u);
    EXPECT_TRUE(Launch());
}

TEST_F(Launcher, FailsLaterOnRequest)
{
    SetFault(L"completion 0x80070005");
    auto const action = Launch();
    Ending const ending(action);
    EXPECT_EQ(ending.Status(), AsyncStatus::Error);
    EXPECT_EQ(ending.Apartment(), APTTYPE_MTA);
    EXPECT_EQ(action.ErrorCode(), denied);
    EXPECT_EQ(m_host.UnfetchedLaunches(), 0u);
}

TEST_F(Launcher, HandsOutNothingOnRequest)
{
    SetFault(L"null");
    EXPECT_FALSE(Launch());
}

TEST_F(Launcher, NeverEndsOnRequest)
{
    SetFault(L"never");
    auto const action = Launch();
    EXPECT_EQ(action.Status(), AsyncStatus::Started);
    EXPECT_EQ(m_host.UnfetchedLaunches(), 0u);
}

TEST_F(Launcher, EndsLaterOnRequest)
{
    SetFault(L"delay 50");
    auto const start = std::chrono::steady_clock::now();
    auto const action = Launch();
    Ending const ending(action);
    m_host.WaitForLaunch().Complete();
    EXPECT_EQ(ending.Status(), AsyncStatus::Completed);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(49));
}

TEST_F(Launcher, EndsWhenTheFaultsAreClearedOnRequest)
{
    SetFault(L"held");
    auto const action = Launch();
    Ending const ending(action);
    m_host.WaitForLaunch().Complete();
    EXPECT_EQ(action.Status(), AsyncStatus::Started);
    m_host.ClearFaults();
    EXPECT_EQ(ending.Status(), AsyncStatus::Completed);
}

TEST_F(Launcher, ClassIsMissingOnRequest)
{
    m_host.SetFault(L"FullTrustProcessLauncher now 0x80040154");
    try
    {
        Launch();
        FAIL();
    }
    catch (winrt::hresult_error const& error)
    {
        EXPECT_EQ(error.code(), REGDB_E_CLASSNOTREG);
    }
}
