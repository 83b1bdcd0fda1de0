#include "doctor/live/PackageCheck.h"

#include "tests/unit/doctor/LiveSystem.h"

#include <gtest/gtest.h>

using doctor::ConnectionStatus;
using doctor::Packages;
using doctor::Result;

namespace
{

constexpr wchar_t family[] = L"Velmo.Test_abc";

// What the system's functions give.
struct
{
    std::vector<std::wstring> names;
    LONG error = ERROR_SUCCESS; // of the call that fetches the names
    std::wstring asked;
    LONG pathError = ERROR_SUCCESS; // of the call that fetches the path
} packageStore;

LONG WINAPI PackagesByFamily(PCWSTR asked, UINT32* count, PWSTR* names, UINT32* length, PWSTR buffer)
{
    packageStore.asked = asked;
    UINT32 needed = 0;
    for (auto const& name : packageStore.names)
    {
        needed += static_cast<UINT32>(name.size() + 1);
    }
    auto const fits = *length >= needed && *count >= packageStore.names.size();
    *count = static_cast<UINT32>(packageStore.names.size());
    *length = needed;
    if (!fits)
    {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    for (auto const& name : packageStore.names)
    {
        *names++ = buffer;
        buffer += name.copy(buffer, name.size());
        *buffer++ = L'\0';
    }
    return packageStore.error;
}

LONG WINAPI PathByName(PCWSTR name, UINT32* length, PWSTR path)
{
    auto const text = std::wstring(L"C:\\apps\\") + name;
    auto const fits = *length > text.size();
    *length = static_cast<UINT32>(text.size() + 1);
    if (!fits)
    {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    path[text.copy(path, text.size())] = L'\0';
    return packageStore.pathError;
}

class PackageCheck : public testing::Test
{
  protected:
    PackageCheck()
    {
        packageStore = {};
        m_functions.Set("GetPackagesByPackageFamily", &PackagesByFamily);
        m_functions.Set("GetPackagePathByFullName", &PathByName);
    }

    test::SystemFunctions m_functions;
};

} // namespace

TEST_F(PackageCheck, ListsThePackagesOfTheFamily)
{
    packageStore.names = {L"Velmo.Test_1.0.0.0_x64__abc", L"Velmo.Test_2.0.0.0_x64__abc"};
    auto const packages = doctor::PackagesOfFamily(family);
    EXPECT_EQ(packages.error, ERROR_SUCCESS);
    EXPECT_EQ(packages.names, packageStore.names);
    EXPECT_EQ(packageStore.asked, family);
}

TEST_F(PackageCheck, ListsNoneOfAFamilyThatIsNotInstalled)
{
    auto const packages = doctor::PackagesOfFamily(family);
    EXPECT_EQ(packages.error, ERROR_SUCCESS);
    EXPECT_EQ(packages.names, std::vector<std::wstring>{});
}

TEST_F(PackageCheck, NamesTheErrorOfTheSystem)
{
    packageStore.names = {L"one"};
    packageStore.error = ERROR_ACCESS_DENIED;
    auto const packages = doctor::PackagesOfFamily(family);
    EXPECT_EQ(packages.error, ERROR_ACCESS_DENIED);
    EXPECT_EQ(packages.names, std::vector<std::wstring>{});
}

TEST_F(PackageCheck, FindsTheFolderOfAPackage)
{
    EXPECT_EQ(doctor::FolderOfPackage(L"one"), L"C:\\apps\\one");
    packageStore.pathError = ERROR_NOT_FOUND;
    EXPECT_EQ(doctor::FolderOfPackage(L"one"), std::nullopt);
}

TEST_F(PackageCheck, KnowsNothingWithoutTheSystemsFunctions)
{
    test::LoadLibraryCall const missing(test::Failing<HMODULE>(nullptr, ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(doctor::PackagesOfFamily(family).error, ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(doctor::FolderOfPackage(L"one"), std::nullopt);
}

TEST(PackageCheckFinding, NamesThePackagesThatAreInstalled)
{
    auto const finding = doctor::PackageFinding({0, {L"one", L"two"}}, ConnectionStatus::AppUnavailable);
    EXPECT_EQ(finding.stage, doctor::Stage::Package);
    EXPECT_EQ(finding.result, Result::Worked);
    EXPECT_EQ(finding.what, "The package is installed: one, two.");
}

TEST(PackageCheckFinding, BelievesTheServiceThatOpens)
{
    for (auto const error : {0L, static_cast<long>(ERROR_PROC_NOT_FOUND)})
    {
        auto const finding = doctor::PackageFinding({error, {}}, ConnectionStatus::Success);
        EXPECT_EQ(finding.result, Result::Worked);
        EXPECT_EQ(finding.what, "The package is installed: its app service opens.");
    }
}

TEST(PackageCheckFinding, SaysThatThePackageIsNotInstalled)
{
    for (auto const& [packages, status] : std::vector<std::pair<Packages, std::optional<ConnectionStatus>>>{
             {{0, {}}, std::nullopt}, {{ERROR_PROC_NOT_FOUND, {}}, ConnectionStatus::AppNotInstalled}})
    {
        auto const finding = doctor::PackageFinding(packages, status);
        EXPECT_EQ(finding.stage, doctor::Stage::Package);
        EXPECT_EQ(finding.result, Result::Failed);
        EXPECT_EQ(finding.what, "The package is not installed for this user.");
        EXPECT_NE(finding.cause, "");
        EXPECT_NE(finding.advice, "");
    }
}

TEST(PackageCheckFinding, SaysThatNobodyTells)
{
    auto const finding = doctor::PackageFinding({ERROR_PROC_NOT_FOUND, {}}, std::nullopt);
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_TRUE(finding.what.starts_with("Whether the package is installed cannot be told: ")) << finding.what;
    EXPECT_TRUE(finding.what.ends_with(" (127).")) << finding.what;
}
