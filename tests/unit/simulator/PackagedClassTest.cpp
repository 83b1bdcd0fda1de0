#include "simulator/runtime/PackagedClasses.h"
#include "tests/support/Files.h"
#include "tests/unit/simulator/ViewFixture.h"

#include <windows.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

using namespace winrt::Windows::UI::Xaml;
using winrt::Windows::Foundation::IInspectable;

namespace
{

// Makes no page: the type is known and cannot be made, or fails.
struct Type : winrt::implements<Type, Markup::IXamlType>
{
    Markup::IXamlType BaseType() const { return nullptr; }
    Markup::IXamlMember ContentProperty() const { return nullptr; }
    winrt::hstring FullName() const { return L"Tests.Type"; }
    bool IsArray() const { return false; }
    bool IsCollection() const { return false; }
    bool IsConstructible() const { return isConstructible; }
    bool IsDictionary() const { return false; }
    bool IsMarkupExtension() const { return false; }
    bool IsBindable() const { return false; }
    Markup::IXamlType ItemType() const { return nullptr; }
    Markup::IXamlType KeyType() const { return nullptr; }
    Interop::TypeName UnderlyingType() const { return {}; }
    IInspectable ActivateInstance() const { throw winrt::hresult_access_denied(); }
    IInspectable CreateFromString(winrt::hstring const&) const { return nullptr; }
    Markup::IXamlMember GetMember(winrt::hstring const&) const { return nullptr; }
    void AddToVector(IInspectable const&, IInspectable const&) const {}
    void AddToMap(IInspectable const&, IInspectable const&, IInspectable const&) const {}
    void RunInitializer() const {}

    bool isConstructible = false;
};

struct App : ApplicationT<App, Markup::IXamlMetadataProvider>
{
    Markup::IXamlType GetXamlType(Interop::TypeName const& type) const { return GetXamlType(type.Name); }
    Markup::IXamlType GetXamlType(winrt::hstring const& name) const
    {
        auto const type = winrt::make_self<Type>();
        type->isConstructible = name == L"Tests.Failing";
        return name == L"Tests.Unknown" ? nullptr : type.as<Markup::IXamlType>();
    }
    winrt::com_array<Markup::XmlnsDefinition> GetXmlnsDefinitions() const { return {}; }
};

class PackagedClasses : public ViewFixture
{
  protected:
    PackagedClasses() { WriteManifest(L"Server.dll"); }

    void WriteManifest(std::wstring const& server) const
    {
        test::WriteBytes(m_package / L"AppxManifest.xml",
                         R"(<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10">
                 <Identity Name="A.Package" Publisher="CN=Somebody" Version="1.0.0.0"/>
                 <Applications><Application Id="App" Executable="App.exe" EntryPoint="A.App"/></Applications>
                 <Extensions><Extension Category="windows.activatableClass.inProcessServer"><InProcessServer>
                   <Path>)" + winrt::to_string(server) +
                             R"(</Path>
                   <ActivatableClass ActivatableClassId="Tests.Thing" ThreadingModel="both"/>
                   <ActivatableClass ActivatableClassId="Tests.NotInTheServer" ThreadingModel="both"/>
                 </InProcessServer></Extension></Extensions></Package>)");
    }

    void ProvideServer() const { ASSERT_TRUE(CopyFileW(CLASS_SERVER, (m_package / L"Server.dll").c_str(), TRUE)); }

    static std::int32_t ResultOf(std::wstring const& className)
    {
        try
        {
            sim::GetPackagedFactory(className);
            return 0;
        }
        catch (winrt::hresult_error const& error)
        {
            return error.code();
        }
    }

    // What the framework reports of its two ways to make a page.
    std::vector<std::wstring> Make(std::wstring const& className)
    {
        m_host.RequestPage(className);
        m_host.Suspend(); // what follows a page that fails still arrives
        std::thread app([] { Application::Start([](auto&&) { winrt::make<App>(); }); });
        m_host.WaitForReport(L"page-failed", 2);
        m_host.End();
        app.join();
        auto reports = Reports();
        std::erase_if(reports, [](auto const& text) { return !text.starts_with(L"page-failed "); });
        return reports;
    }
};

} // namespace

TEST_F(PackagedClasses, AreMadeByTheModuleThatTheManifestNames)
{
    ProvideServer();
    auto const thing = sim::GetPackagedFactory(L"Tests.Thing").ActivateInstance<IInspectable>();
    EXPECT_EQ(winrt::get_class_name(thing), L"Tests.Thing");
}

TEST_F(PackagedClasses, AreNotThereUnlessDeclared)
{
    ProvideServer();
    EXPECT_EQ(ResultOf(L"Tests.Undeclared"), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(ResultOf(L"tests.thing"), REGDB_E_CLASSNOTREG);
}

TEST_F(PackagedClasses, FailAsTheirModuleSays)
{
    ProvideServer();
    EXPECT_EQ(ResultOf(L"Tests.NotInTheServer"), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(PackagedClasses, NeedTheirModule)
{
    EXPECT_EQ(ResultOf(L"Tests.Thing"), HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
    test::WriteBytes(m_package / L"Server.dll", "no module");
    EXPECT_EQ(ResultOf(L"Tests.Thing"), HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT));
}

TEST_F(PackagedClasses, NeedTheModulesEntry)
{
    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    ASSERT_TRUE(
        CopyFileW((std::wstring(system) + L"\\version.dll").c_str(), (m_package / L"Server.dll").c_str(), TRUE));
    EXPECT_EQ(ResultOf(L"Tests.Thing"), HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND));
}

TEST_F(PackagedClasses, NeedAManifest)
{
    DeleteFileW((m_package / L"AppxManifest.xml").c_str());
    EXPECT_EQ(ResultOf(L"Tests.Thing"), REGDB_E_CLASSNOTREG);
}

TEST_F(PackagedClasses, ThatAreNoPagesFailAsPages)
{
    ProvideServer();
    EXPECT_EQ(Make(L"Tests.Thing").front(), L"page-failed by=activation class=Tests.Thing result=0x80004002");
}

TEST_F(PackagedClasses, AreReportedWithTheFailureOfEachWay)
{
    EXPECT_EQ(Make(L"Tests.Failing"),
              (std::vector<std::wstring>{L"page-failed by=activation class=Tests.Failing result=0x80040154",
                                         L"page-failed by=provider class=Tests.Failing result=0x80070005"}));
}

TEST_F(PackagedClasses, AreNotMadeByAnAppThatDoesNotKnowThem)
{
    EXPECT_EQ(Make(L"Tests.Unknown").back(), L"page-failed by=provider class=Tests.Unknown result=0x802B000A");
}

TEST_F(PackagedClasses, AreNotMadeWhenTheirTypeCannotBeConstructed)
{
    EXPECT_EQ(Make(L"Tests.Abstract").back(), L"page-failed by=provider class=Tests.Abstract result=0x802B000A");
}
