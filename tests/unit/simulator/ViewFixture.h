#pragma once
#include "simulator/testing/LocalDevice.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <winrt/Windows.UI.Xaml.h>

// A plain app on the simulator's runtime classes, with a package in a folder.
class ViewFixture : public testing::Test
{
  protected:
    ViewFixture() { m_host.SetPackageFolder(m_package.Path()); }

    // Runs the test's body on the UI thread, while the app lives.
    void OnView(std::function<void()> const& body);

    // What is thrown there, or 0.
    std::int32_t ResultOnView(std::function<void()> const& body);

    // The texts of the device's reports, in order.
    std::vector<std::wstring> Reports();

    test::TemporaryFolder m_package;
    sim::LocalDevice m_host;
};
