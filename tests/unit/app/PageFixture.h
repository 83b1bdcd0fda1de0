#pragma once
#include "app/App.h"
#include "simulator/runtime/LocalHost.h"
#include "tests/support/LogTearDown.h"
#include "tests/support/UserTemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>

namespace test
{

// The app in this process, against the simulator's runtime classes, with the page's markup as it ships in the package's
// folder.
class PageFixture : public testing::Test
{
  protected:
    PageFixture();

    // Runs the test's body where the framework makes pages: on the main view's thread, while the app lives.
    void OnView(std::function<void(VelmoNotificationClient::App& app)> const& body);

    // What the device reported of that kind.
    std::vector<std::wstring> Reported(std::wstring_view kind) const;

    // How often markup was loaded.
    std::size_t Loads() const { return Reported(L"markup-loaded").size(); }

    TemporaryFolder package;
    sim::LocalHost host;

  private:
    UserTemporaryFolder m_temporary;
    LogTearDown m_logTearDown;
};

// What a call throws, or 0.
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
