#include "explore/faults/model/SideBySide.h"

#include "tests/native/FaultsFlows.h"

#include <gtest/gtest.h>

using namespace explore::faults;

namespace
{

constexpr auto closedLine = L"[INFO] AppService AppService Closed";
constexpr auto cancelledLine = L"[INFO] AppService Inside OnTaskCanceled VelmoNotificationClient "
                               L"UwpNotificationAppService::OnTaskCanceled deferral complete";
constexpr auto notCompletedLine = L"[ERROR] AppService Inside OnTaskCanceled VelmoNotificationClient "
                                  L"UwpNotificationAppService::OnTaskCanceled deferral complete error";
constexpr auto completeTask = L"BackgroundTaskDeferral.Complete";
constexpr auto closeConnection = L"AppServiceConnection.Close";

WayAt Fails(std::size_t call)
{
    return {call, {Way::Kind::Now, Results::failed}};
}

bool CanClose(SideBySide::Seen const& seen, std::vector<WayAt> const& deviations = {})
{
    return SideBySide(test::CloseFlow().handlers, {}, deviations).CanLeadTo(seen);
}

bool CanCancel(SideBySide::Seen const& seen, std::vector<WayAt> const& deviations = {})
{
    return SideBySide(test::CancelFlow().handlers, test::CancelFlow().closed, deviations).CanLeadTo(seen);
}

} // namespace

TEST(FaultsSideBySideTest, LetsEachHandlerBeFirst)
{
    EXPECT_TRUE(CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection}, 1}));
    EXPECT_TRUE(CanClose({{cancelledLine, closedLine}, {completeTask, closeConnection}, 1}));
}

TEST(FaultsSideBySideTest, LetsBothFindWhatTheyRelease)
{
    EXPECT_TRUE(
        CanClose({{closedLine, cancelledLine}, {completeTask, completeTask, closeConnection, closeConnection}, 1}));
    EXPECT_TRUE(
        CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection, completeTask, closeConnection}, 1}));
    EXPECT_TRUE(CanClose({{closedLine, cancelledLine}, {completeTask, completeTask, closeConnection}, 1}));
}

TEST(FaultsSideBySideTest, FindsWhatNoOrderLeadsTo)
{
    EXPECT_FALSE(CanClose({{closedLine}, {completeTask, closeConnection}, 1}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine, cancelledLine}, {completeTask, closeConnection}, 1}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {completeTask}, 1}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {closeConnection, completeTask}, 1}));
    EXPECT_FALSE(
        CanClose({{closedLine, cancelledLine}, {completeTask, completeTask, completeTask, closeConnection}, 1}));
    EXPECT_FALSE(
        CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection, closeConnection, completeTask}, 1}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection}, 0}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection}, 1, true}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine, notCompletedLine}, {completeTask, closeConnection}, 1}));
}

TEST(FaultsSideBySideTest, GuardsTheCompletionOfACancelledTaskOnly)
{
    EXPECT_TRUE(CanCancel({{cancelledLine, notCompletedLine}, {completeTask, closeConnection}, 0}, {Fails(0)}));
    EXPECT_FALSE(CanCancel({{cancelledLine}, {completeTask}, 0}, {Fails(0)}));
    EXPECT_TRUE(CanCancel({{cancelledLine}, {completeTask, closeConnection}, 1}, {Fails(1)}));
    // The other one ends at its own failure, and leaves the task's to this one.
    EXPECT_TRUE(CanClose({{closedLine, cancelledLine}, {completeTask, completeTask, closeConnection}, 1}, {Fails(0)}));
    EXPECT_TRUE(CanClose(
        {{closedLine, cancelledLine, notCompletedLine}, {completeTask, completeTask, closeConnection}, 1}, {Fails(0)}));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection}, 1}, {Fails(0)}));
}

TEST(FaultsSideBySideTest, EndsAtTheCallAtWhichTheProcessIsKilled)
{
    std::vector<WayAt> const killed = {{0, {Way::Kind::Killed}}};
    EXPECT_TRUE(CanClose({{closedLine}, {completeTask}, 0, true}, killed));
    EXPECT_TRUE(CanClose({{closedLine, cancelledLine}, {completeTask}, 0, true}, killed));
    EXPECT_FALSE(CanClose({{}, {completeTask}, 0, true}, killed));
    EXPECT_FALSE(CanClose({{closedLine}, {completeTask}, 0, false}, killed));
    EXPECT_FALSE(CanClose({{closedLine, cancelledLine}, {completeTask, closeConnection}, 1, false}, killed));
}

TEST(FaultsSideBySideTest, TellsTheEndOfAHelperThatGoesAwayMeanwhile)
{
    std::vector<WayAt> const atOnce = {{0, {Way::Kind::HelperCloses}}};
    EXPECT_TRUE(CanCancel({{cancelledLine, closedLine}, {completeTask, completeTask, closeConnection}, 1}, atOnce));
    // Not of a connection that is closedLine by then.
    EXPECT_TRUE(CanCancel({{cancelledLine}, {completeTask, closeConnection}, 1}, atOnce));
    EXPECT_TRUE(CanCancel({{cancelledLine, closedLine}, {completeTask, closeConnection, closeConnection}, 1},
                          {{0, {Way::Kind::HelperDies}}, Fails(1)}));
    EXPECT_FALSE(
        CanCancel({{cancelledLine}, {completeTask, closeConnection}, 1}, {{0, {Way::Kind::HelperDies}}, Fails(1)}));
    // Nor of a task that has ended.
    EXPECT_FALSE(
        CanCancel({{cancelledLine, closedLine}, {completeTask, closeConnection}, 1}, {{1, {Way::Kind::HelperCloses}}}));
    EXPECT_FALSE(CanCancel({{cancelledLine, closedLine}, {completeTask, closeConnection}, 1}));
}
