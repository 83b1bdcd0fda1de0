#include "simulator/base/Files.h"
#include "simulator/protocol/SettingsFile.h"
#include "simulator/runtime/storage/SettingsStore.h"
#include "simulator/runtime/values/ValueBytes.h"
#include "tests/unit/simulator/BackgroundApp.h"

#include <windows.h>
#include <winrt/Windows.Storage.h>

using namespace test;
using winrt::Windows::Foundation::PropertyValue;
using winrt::Windows::Storage::ApplicationData;

namespace
{

constexpr auto tooLarge = static_cast<std::int32_t>(0x80073DC8);
constexpr std::size_t longestText = 4091; // with what it costs, 8 KB

class LocalSettings : public testing::Test
{
  protected:
    static auto Values() { return ApplicationData::Current().LocalSettings().Values(); }

    // As another process of the app would find them.
    std::wstring Kept(std::wstring_view name)
    {
        sim::SettingsStore const store(sim::SettingsFileIn(host.DataFolder()));
        auto const value = store.CopyOf(winrt::hstring(name));
        return value ? std::wstring(winrt::unbox_value<winrt::hstring>(value)) : L"(none)";
    }

    static std::int32_t Insert(std::wstring_view name, IInspectable const& value)
    {
        return FailureOf([&] { Values().Insert(name, value); });
    }

    static IInspectable Text(std::size_t length) { return winrt::box_value(std::wstring(length, L'x')); }

    sim::LocalDevice host;
};

} // namespace

TEST_F(LocalSettings, AreKeptAcrossProcesses)
{
    EXPECT_FALSE(Values().Insert(L"CURI", winrt::box_value(L"https://a/%2b")));
    EXPECT_EQ(Kept(L"CURI"), L"https://a/%2b");
    EXPECT_TRUE(Values().Insert(L"CURI", winrt::box_value(L"b")));
    EXPECT_EQ(Kept(L"CURI"), L"b");
    EXPECT_EQ(winrt::unbox_value<winrt::hstring>(Values().Lookup(L"CURI")), L"b");
}

TEST_F(LocalSettings, AreThoseOfTheDevice)
{
    sim::WriteSettings(sim::SettingsFileIn(host.DataFolder()), {sim::EntryOf(L"CURI", winrt::box_value(L"old"))});
    EXPECT_EQ(winrt::unbox_value<winrt::hstring>(Values().Lookup(L"CURI")), L"old");
}

TEST_F(LocalSettings, GiveNullForWhatIsNotThere)
{
    EXPECT_FALSE(Values().Lookup(L"CURI"));
    EXPECT_FALSE(Values().HasKey(L"CURI"));
}

TEST_F(LocalSettings, GiveCopies)
{
    Values().Insert(L"a", winrt::box_value(1));
    EXPECT_NE(Values().Lookup(L"a"), Values().Lookup(L"a"));
}

TEST_F(LocalSettings, AreWalkedThrough)
{
    Values().Insert(L"b", winrt::box_value(1));
    Values().Insert(L"a", winrt::box_value(2));
    std::vector<std::wstring> names;
    for (auto const& entry : Values())
    {
        names.emplace_back(entry.Key());
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"b", L"a"}));
    EXPECT_EQ(winrt::unbox_value<int>(Values().GetView().Lookup(L"a")), 2);
    EXPECT_EQ(Values().Size(), 2u);
}

TEST_F(LocalSettings, LetGoOfWhatIsRemoved)
{
    Values().Insert(L"a", winrt::box_value(L"x"));
    Values().Insert(L"b", winrt::box_value(L"x"));
    Values().Insert(L"c", winrt::box_value(L"x"));
    Values().Remove(L"a");
    Values().Insert(L"b", nullptr);
    EXPECT_EQ(Kept(L"a"), L"(none)");
    EXPECT_EQ(Kept(L"b"), L"(none)");
    EXPECT_EQ(Kept(L"c"), L"x");
    Values().Clear();
    EXPECT_EQ(Kept(L"c"), L"(none)");
}

TEST_F(LocalSettings, HaveLimits)
{
    EXPECT_EQ(Insert(L"text", Text(longestText)), 0);
    EXPECT_EQ(Insert(L"text", Text(longestText + 1)), tooLarge);
    EXPECT_EQ(Kept(L"text").size(), longestText);
    EXPECT_EQ(Insert(std::wstring(255, L'n'), Text(1)), 0);
    EXPECT_EQ(Insert(std::wstring(256, L'n'), Text(1)), tooLarge);
}

TEST_F(LocalSettings, DoNotTakeEveryType)
{
    constexpr auto unsupported = static_cast<std::int32_t>(0x8007065E);
    EXPECT_EQ(Insert(L"set", ValueSet()), unsupported);
    EXPECT_EQ(Insert(L"object", AppServiceConnection()), unsupported);
    EXPECT_EQ(Insert(L"array", PropertyValue::CreateInt32Array({1, 2})), 0);
}

TEST_F(LocalSettings, StayAsTheyAreWhenTheyCannotBeWritten)
{
    Values().Insert(L"a", winrt::box_value(L"old"));
    sim::MakeFolder(sim::SettingsFileIn(host.DataFolder()) + L".new"); // where the new file is to be written
    EXPECT_EQ(Insert(L"a", winrt::box_value(L"new")), E_FAIL);
    EXPECT_EQ(Kept(L"a"), L"old");
    EXPECT_EQ(winrt::unbox_value<winrt::hstring>(Values().Lookup(L"a")), L"old");
}

TEST_F(LocalSettings, AreNotReadFromAFileThatIsNone)
{
    auto const path = sim::SettingsFileIn(host.DataFolder());
    sim::MakeFolder(sim::ParentOf(path));
    sim::WriteBytes(path, "no settings");
    EXPECT_EQ(FailureOf([] { Values(); }), E_FAIL);
}

TEST_F(LocalSettings, FailOnRequest)
{
    host.SetFault(L"ApplicationData.Current now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { ApplicationData::Current(); }), E_FAIL);
    host.SetFault(L"ApplicationData.Current null 1");
    EXPECT_FALSE(ApplicationData::Current());
    host.SetFault(L"ApplicationData.LocalSettings now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { ApplicationData::Current().LocalSettings(); }), E_FAIL);
    host.SetFault(L"ApplicationData.LocalSettings null 1");
    EXPECT_FALSE(ApplicationData::Current().LocalSettings());
    host.SetFault(L"ApplicationDataContainer.Values null 1");
    EXPECT_FALSE(Values());
    host.SetFault(L"ApplicationDataContainerSettings.Lookup now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { Values().Lookup(L"a"); }), E_FAIL);
    host.SetFault(L"ApplicationDataContainerSettings.Insert now 0x80004005 1");
    EXPECT_EQ(Insert(L"a", winrt::box_value(1)), E_FAIL);
    EXPECT_FALSE(Values().HasKey(L"a"));
}
