#include "simulator/package/Manifest.h"
#include "simulator/base/Error.h"
#include "simulator/package/Package.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

std::string const whole = R"(<?xml version="1.0" encoding="utf-8"?>
<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10"
         xmlns:u="http://schemas.microsoft.com/appx/manifest/uap/windows10"
         xmlns:desktop="http://schemas.microsoft.com/appx/manifest/desktop/windows10"
         xmlns:rescap="http://schemas.microsoft.com/appx/manifest/foundation/windows10/restrictedcapabilities">
  <Identity Name="A.Package" Publisher="CN=Somebody" Version="1.2.3.4"/>
  <Applications>
    <Application Id="App" Executable="App.exe" EntryPoint="A.App">
      <Extensions>
        <u:Extension Category="windows.appService"><u:AppService Name="service"/></u:Extension>
        <u:Extension Category="windows.protocol"><u:Protocol Name="one-protocol"/></u:Extension>
        <u:Extension Category="windows.protocol"><u:Protocol Name="another"/></u:Extension>
        <desktop:Extension Category="windows.fullTrustProcess" Executable="Sub\Desktop.exe">
          <desktop:FullTrustProcess>
            <desktop:ParameterGroup GroupId="First" Parameters="/first &quot;a b&quot;"/>
            <desktop:ParameterGroup GroupId="Second" Parameters="/second"/>
          </desktop:FullTrustProcess>
        </desktop:Extension>
      </Extensions>
    </Application>
  </Applications>
  <Capabilities><rescap:Capability Name="runFullTrust"/></Capabilities>
  <Extensions>
    <Extension Category="windows.activatableClass.inProcessServer">
      <InProcessServer>
        <Path>App.exe</Path>
        <ActivatableClass ActivatableClassId="A.Page" ThreadingModel="both"/>
        <ActivatableClass ActivatableClassId="A.Provider" ThreadingModel="STA"/>
      </InProcessServer>
    </Extension>
    <Extension Category="windows.activatableClass.inProcessServer">
      <InProcessServer>
        <Path>Sub\<![CDATA[Other]]>.dll</Path>
        <ActivatableClass ActivatableClassId="A.Thing" ThreadingModel="MTA"/>
      </InProcessServer>
    </Extension>
    <Extension Category="windows.certificates"/>
  </Extensions>
</Package>
)";

class ManifestTest : public testing::Test
{
  protected:
    sim::Manifest Read(std::string const& text) const
    {
        test::WriteBytes(Path(), text);
        return sim::ReadManifest(Path());
    }

    // The message of the error that the whole manifest gives with one part of it replaced.
    std::wstring ErrorWith(std::string const& part, std::string const& replacement) const
    {
        auto text = whole;
        auto const at = text.find(part);
        EXPECT_NE(at, std::string::npos) << part;
        text.replace(at, part.size(), replacement);
        return ErrorOf(text);
    }

    std::wstring ErrorOf(std::string const& text) const
    {
        try
        {
            Read(text);
        }
        catch (sim::Error const& error)
        {
            return error.Message();
        }
        return L"no error";
    }

    std::wstring Path() const { return m_folder / L"AppxManifest.xml"; }

    test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ManifestTest, GivesWhatThePackageDeclares)
{
    auto const manifest = Read(whole);
    EXPECT_EQ(manifest.name, L"A.Package");
    EXPECT_EQ(manifest.publisher, L"CN=Somebody");
    EXPECT_EQ(manifest.version, L"1.2.3.4");
    EXPECT_EQ(manifest.applicationId, L"App");
    EXPECT_EQ(manifest.executable, L"App.exe");
    EXPECT_EQ(manifest.entryPoint, L"A.App");
    EXPECT_EQ(manifest.protocols, (std::vector<std::wstring>{L"one-protocol", L"another"}));
    EXPECT_TRUE(manifest.DeclaresAppService(L"service"));
    EXPECT_FALSE(manifest.DeclaresAppService(L"Service"));
    EXPECT_TRUE(manifest.mayRunFullTrust);
    ASSERT_TRUE(manifest.desktopComponent);
    EXPECT_EQ(manifest.desktopComponent->executable, L"Sub\\Desktop.exe");
    ASSERT_NE(manifest.desktopComponent->Group(L"First"), nullptr);
    EXPECT_EQ(manifest.desktopComponent->Group(L"First")->parameters, L"/first \"a b\"");
    EXPECT_EQ(manifest.desktopComponent->Group(L"first"), nullptr);
}

TEST_F(ManifestTest, TellsWhichModuleHasAClass)
{
    auto const manifest = Read(whole);
    ASSERT_EQ(manifest.inProcessServers.size(), 2u);
    EXPECT_EQ(manifest.InProcessServerOf(L"A.Page"), &manifest.inProcessServers[0]);
    EXPECT_EQ(manifest.InProcessServerOf(L"A.Provider"), &manifest.inProcessServers[0]);
    EXPECT_EQ(manifest.InProcessServerOf(L"A.Thing"), &manifest.inProcessServers[1]);
    EXPECT_EQ(manifest.inProcessServers[0].path, L"App.exe");
    EXPECT_EQ(manifest.inProcessServers[1].path, L"Sub\\Other.dll");
    EXPECT_EQ(manifest.InProcessServerOf(L"a.page"), nullptr);
    EXPECT_EQ(manifest.InProcessServerOf(L"A.App"), nullptr);
}

TEST_F(ManifestTest, ReadsTheShippedManifest)
{
    auto const manifest = sim::ReadManifest(PACKAGE_MANIFEST);
    EXPECT_EQ(manifest.executable, L"VelmoNotificationClient.exe");
    ASSERT_TRUE(manifest.desktopComponent);
    EXPECT_EQ(manifest.desktopComponent->groups.size(), 3u);
    EXPECT_TRUE(manifest.DeclaresAppService(L"com.velmo.notification"));
    for (auto const* className :
         {L"VelmoNotificationClient.MainPage",
          L"VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider"})
    {
        ASSERT_NE(manifest.InProcessServerOf(className), nullptr);
        EXPECT_EQ(manifest.InProcessServerOf(className)->path, manifest.executable);
    }
}

TEST_F(ManifestTest, KnowsAPackageWithoutExtensionsAndCapabilities)
{
    auto const manifest = Read(R"(<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10">
        <Identity Name="A.Package" Publisher="CN=Somebody" Version="1.0.0.0"/>
        <Applications><Application Id="App" Executable="App.exe" EntryPoint="A.App"/></Applications></Package>)");
    EXPECT_FALSE(manifest.desktopComponent);
    EXPECT_FALSE(manifest.mayRunFullTrust);
    EXPECT_TRUE(manifest.protocols.empty());
}

TEST_F(ManifestTest, SaysThatTheFileIsMissing)
{
    try
    {
        sim::ReadManifest(Path());
        FAIL();
    }
    catch (sim::Error const& error)
    {
        EXPECT_EQ(error.Message(), L"there is no file " + Path());
    }
}

TEST_F(ManifestTest, NamesTheLineOfBrokenXml)
{
    auto const message = ErrorWith("<Applications>", "<Applications");
    EXPECT_EQ(message.find(Path() + L" is not well-formed XML at line "), 0u);
}

TEST_F(ManifestTest, RefusesAnEmptyFile)
{
    EXPECT_NE(ErrorOf("").find(L"is not well-formed XML"), std::wstring::npos);
}

TEST_F(ManifestTest, RefusesAFileCutAnywhere)
{
    for (auto size = whole.rfind('>'); size > 0; --size)
    {
        ASSERT_THROW(sim::ParseManifest(whole.substr(0, size), Path()), sim::Error) << size;
    }
}

TEST_F(ManifestTest, SaysThatAFileCutInTheMiddleIsNotWellFormed)
{
    EXPECT_EQ(ErrorOf(whole.substr(0, whole.find("<Applications>"))),
              Path() + L" is not well-formed XML at line 7 (it has no element, or something in it has no end)");
}

// What has no end hides all that follows.
TEST_F(ManifestTest, RefusesACommentOrTheLikeWithoutAnEnd)
{
    for (std::string const start : {"<!-- a", "<![CDATA[a", "<?a", "<a b='", "<a b=\"", "<a", "<a>", "</a", "<!a"})
    {
        auto file = whole;
        file.insert(file.find("<Applications>"), start);
        EXPECT_NE(ErrorOf(file).find(L"is not well-formed XML"), std::wstring::npos) << start;
    }
}

TEST_F(ManifestTest, RefusesBytesThatAreNoTextInUtf8)
{
    for (std::string const bytes : {"\xDB", "\xC0\xAF", "\xED\xA0\x80", "\xF0\x9F"})
    {
        auto file = whole;
        file.insert(file.find("<Applications>"), bytes);
        EXPECT_EQ(ErrorOf(file),
                  Path() + L" is not well-formed XML at line 1 (it has bytes that are no text in UTF-8)");
    }
    EXPECT_THROW(sim::ParseManifest(whole + '\0', Path()), sim::Error);
}

TEST_F(ManifestTest, HasCommentsAndQuotesWithWhatLooksLikeTags)
{
    auto file = whole;
    file.insert(file.find("<Applications>"), "<!-- <a> \" --><?a <b> ' ?>");
    file.replace(file.find("CN=Somebody"), 11, "CN=A>'/");
    test::WriteBytes(Path(), file);
    EXPECT_EQ(sim::ReadManifest(Path()).publisher, L"CN=A>'/");
}

TEST_F(ManifestTest, RefusesAnotherRoot)
{
    EXPECT_NE(ErrorOf("<Package/>").find(L"its root is no <Package>"), std::wstring::npos);
}

struct Lack
{
    std::string part;
    std::string replacement;
    std::wstring message; // after the file's name
};

TEST_F(ManifestTest, NamesWhatIsMissingOrWrong)
{
    std::vector<Lack> const lacks = {
        {"<Identity Name=\"A.Package\" Publisher=\"CN=Somebody\" Version=\"1.2.3.4\"/>", "",
         L"<Package> has no <Identity>"},
        {"Name=\"A.Package\" ", "", L"<Identity> has no Name"},
        {"Publisher=\"CN=Somebody\"", "Publisher=\"\"", L"<Identity> has no Publisher"},
        {"Version=\"1.2.3.4\"", "", L"<Identity> has no Version"},
        {"1.2.3.4", "1.2.3", L"the Version 1.2.3 is not of four numbers up to 65535"},
        {"1.2.3.4", "1.2.3.4.5", L"the Version 1.2.3.4.5 is not of four numbers up to 65535"},
        {"1.2.3.4", "1.2.3.", L"the Version 1.2.3. is not of four numbers up to 65535"},
        {"1.2.3.4", "1.2.65536.4", L"the Version 1.2.65536.4 is not of four numbers up to 65535"},
        {"Id=\"App\" ", "", L"<Application> has no Id"},
        {"Executable=\"App.exe\" ", "", L"<Application> has no Executable"},
        {" EntryPoint=\"A.App\"", "", L"<Application> has no EntryPoint"},
        {"<Application Id=\"App\" Executable=\"App.exe\" EntryPoint=\"A.App\">",
         "<Application Id=\"B\" Executable=\"B.exe\" EntryPoint=\"B\"/>"
         "<Application Id=\"App\" Executable=\"App.exe\" EntryPoint=\"A.App\">",
         L"<Applications> has 2 <Application>, one is served"},
        {" Category=\"windows.protocol\"", "", L"<Extension> has no Category"},
        {"<u:Protocol Name=\"one-protocol\"/>", "", L"the windows.protocol extension has no <uap:Protocol>"},
        {"one-protocol", "One-Protocol", L"the protocol name One-Protocol is not in lower case"},
        {"<u:AppService Name=\"service\"/>", "", L"the windows.appService extension has no <uap:AppService>"},
        {"<u:AppService Name=\"service\"/>", "<u:AppService/>", L"<AppService> has no Name"},
        {"Category=\"windows.appService\"", "Category=\"windows.appService\" EntryPoint=\"A.Task\"",
         L"the windows.appService extension has an EntryPoint; served are those of the application itself"},
        {"<Extensions>",
         "<Extensions><u:Extension Category=\"windows.appService\"><u:AppService Name=\"service\"/></u:Extension>",
         L"there are two app services with the Name service"},
        {" Executable=\"Sub\\Desktop.exe\"", "", L"<Extension> has no Executable"},
        {"GroupId=\"First\" ", "", L"<ParameterGroup> has no GroupId"},
        {" Parameters=\"/second\"", "", L"<ParameterGroup> has no Parameters"},
        {"GroupId=\"Second\"", "GroupId=\"First\"", L"there are two parameter groups with the GroupId First"},
        {"<Extensions>",
         "<Extensions><desktop:Extension Category=\"windows.fullTrustProcess\" Executable=\"Other.exe\"/>",
         L"there is more than one windows.fullTrustProcess extension"},
        {"<Path>App.exe</Path>", "", L"<InProcessServer> has no <Path>"},
        {"<Path>App.exe</Path>", "<Path> </Path>", L"the <Path> of an in-process server is empty"},
        {"<ActivatableClass ActivatableClassId=\"A.Thing\" ThreadingModel=\"MTA\"/>", "",
         L"<InProcessServer> has no <ActivatableClass>"},
        {"ActivatableClassId=\"A.Page\"", "", L"<ActivatableClass> has no ActivatableClassId"},
        {" ThreadingModel=\"STA\"", "", L"<ActivatableClass> has no ThreadingModel"},
        {"ThreadingModel=\"STA\"", "ThreadingModel=\"sta\"", L"there is no ThreadingModel sta"},
        {"A.Provider", "A.Page", L"there are two classes with the ActivatableClassId A.Page"},
        {"A.Thing", "A.Page", L"there are two classes with the ActivatableClassId A.Page"},
        {" Category=\"windows.certificates\"", "", L"<Extension> has no Category"}};
    for (auto const& lack : lacks)
    {
        EXPECT_EQ(ErrorWith(lack.part, lack.replacement), Path() + L": " + lack.message);
    }
}

TEST_F(ManifestTest, RefusesAPackageWithoutApplications)
{
    EXPECT_EQ(ErrorOf(R"(<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10">
        <Identity Name="A.Package" Publisher="CN=Somebody" Version="1.0.0.0"/></Package>)"),
              Path() + L": <Package> has no <Applications>");
}

TEST_F(ManifestTest, APackageWithoutItsExecutableIsRefused)
{
    test::WriteBytes(Path(), whole);
    try
    {
        sim::OpenPackage(m_folder.Path());
        FAIL();
    }
    catch (sim::Error const& error)
    {
        EXPECT_EQ(error.Message(), L"the manifest names App.exe, which is not in " + m_folder.Path());
    }
}

TEST_F(ManifestTest, APackageWithoutItsDesktopComponentIsTaken)
{
    test::WriteBytes(Path(), whole);
    test::WriteBytes(m_folder / L"App.exe", "x");
    auto const package = sim::OpenPackage(m_folder.Path());
    EXPECT_EQ(package.DesktopExecutable(), m_folder / L"Sub\\Desktop.exe");
}
