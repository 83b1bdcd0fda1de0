#include "simulator/testing/LocalDevice.h"

#include <gtest/gtest.h>
#include <winrt/Windows.Foundation.h>

namespace Foundation = winrt::Windows::Foundation;

TEST(Uri, TellTheirParts)
{
    sim::LocalDevice const host;
    Foundation::Uri const uri(L"ms-appx://package/Folder/A.xaml");
    EXPECT_EQ(uri.SchemeName(), L"ms-appx");
    EXPECT_EQ(uri.Host(), L"package");
    EXPECT_EQ(uri.Path(), L"/Folder/A.xaml");
    EXPECT_EQ(uri.AbsoluteUri(), L"ms-appx://package/Folder/A.xaml");
    EXPECT_EQ(Foundation::Uri(L"ms-appx://package").Path(), L"");
}

TEST(Uri, HaveAScheme)
{
    sim::LocalDevice const host;
    for (auto const* text : {L"", L"Folder/A.xaml", L"://package/A.xaml"})
    {
        EXPECT_THROW(Foundation::Uri(winrt::hstring(text)), winrt::hresult_invalid_argument);
    }
}
