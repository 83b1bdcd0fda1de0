#include "doctor/live/ComponentCheck.h"

#include "helper/PackageFacts.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/doctor/LiveSystem.h"
#include "utils/Utf8.h"

#include <gtest/gtest.h>

using doctor::Result;

namespace
{

std::wstring installedFolder;

LONG WINAPI PathOfFolder(PCWSTR, UINT32* length, PWSTR path)
{
    auto const fits = *length > installedFolder.size();
    *length = static_cast<UINT32>(installedFolder.size() + 1);
    if (!fits)
    {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    path[installedFolder.copy(path, installedFolder.size())] = L'\0';
    return ERROR_SUCCESS;
}

class ComponentCheck : public testing::Test
{
  protected:
    ComponentCheck()
    {
        installedFolder = m_folder.Path();
        m_functions.Set("GetPackagePathByFullName", &PathOfFolder);
        CreateDirectoryW((m_folder / L"HOV").c_str(), nullptr);
    }

    std::string PathText() const { return zant::ToUtf8(m_path).value(); }

    doctor::Finding Look() const
    {
        auto finding = doctor::ComponentFinding({0, {L"one"}});
        EXPECT_EQ(finding.stage, doctor::Stage::ComponentLaunched);
        return finding;
    }

    test::TemporaryFolder m_folder;
    test::SystemFunctions m_functions;
    std::wstring m_path = m_folder / L"HOV\\Tessaline.exe";
};

} // namespace

TEST_F(ComponentCheck, LooksForTheFileThatTheManifestNames)
{
    EXPECT_EQ(std::wstring(desktopComponent), L"HOV\\Tessaline.exe");
    test::WriteBytes(m_path, "program");
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Worked);
    EXPECT_EQ(finding.what, "The desktop component is there: " + PathText() + ".");
}

TEST_F(ComponentCheck, SaysThatTheFileIsMissing)
{
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "The desktop component is not there: " + PathText() + ".");
    EXPECT_NE(finding.advice, "");
}

TEST_F(ComponentCheck, TakesNoFolderForTheFile)
{
    CreateDirectoryW(m_path.c_str(), nullptr);
    EXPECT_EQ(Look().result, Result::Failed);
}

TEST_F(ComponentCheck, CannotTellWithoutAccess)
{
    test::GetFileAttributesCall const denied(test::Failing(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED));
    auto const finding = Look();
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_NE(finding.what.find(PathText() + ": "), std::string::npos) << finding.what;
    EXPECT_TRUE(finding.what.ends_with(" (5).")) << finding.what;
}

TEST_F(ComponentCheck, CannotTellWithoutThePackagesFolder)
{
    installedFolder.clear(); // a system that knows the function and not the package
    m_functions.Set("GetPackagePathByFullName", static_cast<decltype(&PathOfFolder)>(nullptr));
    for (auto const& packages : {doctor::Packages{0, {L"one"}}, doctor::Packages{0, {}}})
    {
        auto const finding = doctor::ComponentFinding(packages);
        EXPECT_EQ(finding.result, Result::CannotBeTold);
        EXPECT_EQ(finding.what,
                  "Whether the desktop component is there cannot be told: the package's folder is not known.");
    }
}
