#include "explore/faults/model/Way.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

using namespace explore::faults;

namespace
{

std::pair<Way, char const*> const named[] = {
    {{Way::Kind::Now, Results::failed}, "now-80004005"},
    {{Way::Kind::Null}, "null"},
    {{Way::Kind::Completion, Results::outOfMemory}, "completion-8007000E"},
    {{Way::Kind::Cancelled}, "cancelled"},
    {{Way::Kind::Never}, "never"},
    {{Way::Kind::Ended}, "ended"},
    {{Way::Kind::Unheard, Results::failed}, "unheard-80004005"},
    {{Way::Kind::Status, 2}, "status-2"},
    {{Way::Kind::HelperCloses}, "helper-closes"},
    {{Way::Kind::HelperDies}, "helper-dies"},
    {{Way::Kind::TaskCancelled}, "task-cancelled"},
    {{Way::Kind::Killed}, "killed"},
};

std::string KindsThatApply(std::wstring_view call)
{
    std::string kinds;
    for (auto const& [way, name] : named)
    {
        std::string_view const text = name;
        kinds += Applies(way, call) ? std::string(text.substr(0, text.find('-'))) + ' ' : "";
    }
    return kinds;
}

} // namespace

TEST(FaultsWayTest, HasANameThatLeadsBack)
{
    for (auto const& [way, name] : named)
    {
        EXPECT_EQ(NameOf(way), name);
        EXPECT_EQ(WayOf(name), way) << name;
    }
}

TEST(FaultsWayTest, OfAnotherNameIsNone)
{
    for (auto const* const name :
         {"", "nul", "nulls", "now", "now-", "now-8000400G", "now80004005", "null-1", "ordinary"})
    {
        EXPECT_EQ(WayOf(name), std::nullopt) << name;
    }
}

TEST(FaultsWayTest, AppliesToWhatTheCallGives)
{
    EXPECT_EQ(KindsThatApply(L"CoreApplication.Exit"), std::string("now helper helper task killed "));
    EXPECT_EQ(KindsThatApply(L"ApplicationData.Current"), std::string("now null helper helper task killed "));
    EXPECT_EQ(KindsThatApply(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync"),
              std::string("now null completion cancelled never ended unheard helper helper task killed "));
    EXPECT_EQ(KindsThatApply(L"AppServiceConnection.SendMessageAsync"),
              std::string("now null completion cancelled never ended unheard status helper helper task killed "));
}

TEST(FaultsWayTest, IsConcurrentWhereWhatFollowsHasNoOrder)
{
    EXPECT_TRUE(IsConcurrent({Way::Kind::Ended}));
    EXPECT_TRUE(IsConcurrent({Way::Kind::Completion, Results::failed}));
    EXPECT_TRUE(IsConcurrent({Way::Kind::HelperDies}));
    EXPECT_FALSE(IsConcurrent({Way::Kind::Now, Results::failed}));
    EXPECT_FALSE(IsConcurrent({Way::Kind::Never}));
}
