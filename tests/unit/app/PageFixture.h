#pragma once
#include "app/App.h"
#include "simulator/testing/LocalDevice.h"
#include "tests/support/LogTearDown.h"
#include "tests/support/UserTemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>

namespace test
{

// The app in this process, against the simulator's runtime classes, with the page's markup as in the package's folder.
class PageFixture : public testing::Test
{
  protected:
    PageFixture();

    // Runs the test's body on the UI thread, where the framework creates pages, while the app runs.
    void OnView(std::function<void(VelmoNotificationClient::App& app)> const& body);

    // The device's reports of that kind.
    std::vector<std::wstring> Reported(std::wstring_view kind);

    // The number of times that markup was loaded.
    std::size_t Loads() { return Reported(L"markup-loaded").size(); }

    TemporaryFolder package;
    sim::LocalDevice host;

  private:
    UserTemporaryFolder m_temporary;
    LogTearDown m_logTearDown;
};

// The HRESULT that a call throws, or 0.
template <typename Call>
std::int32_t ResultOf(Call const& call)
{
    try
    {
        call();
        return 0;
    }
    catch (winrt::hresult_error const& error)
    {
        return error.code();
    }
}

} // namespace test
