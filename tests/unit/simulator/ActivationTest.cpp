#include "simulator/model/Activation.h"

#include <gtest/gtest.h>

TEST(Activation, ComesBackFromItsWords)
{
    for (auto const kind : {sim::ActivationKind::Launch, sim::ActivationKind::Protocol, sim::ActivationKind::Suspend,
                            sim::ActivationKind::Page})
    {
        auto const back = sim::Activation::FromWords(sim::Activation{L"7", kind, L"a b"}.Words());
        ASSERT_TRUE(back);
        EXPECT_EQ(back->id, L"7");
        EXPECT_EQ(back->kind, kind);
        EXPECT_EQ(back->argument, L"a b");
    }
}

TEST(Activation, OfTheBackgroundComesBackWithAllThatItCarries)
{
    sim::Activation const task{
        L"8", sim::ActivationKind::BackgroundTask, L"", {L"3", L"{id}", L"A Task", L"push", L"a payload"}};
    auto const back = sim::Activation::FromWords(task.Words());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->kind, sim::ActivationKind::BackgroundTask);
    EXPECT_EQ(back->more, task.more);
    EXPECT_EQ(back->Details(), (std::vector<std::wstring>{L"kind=background-task", L"name=A Task"}));
}

TEST(Activation, IsNotReadFromOtherWords)
{
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"app-service", L""}));
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"launch", L"", L"more"}));
    EXPECT_FALSE(sim::Activation::FromWords({}));
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"launch"}));
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"start", L""}));
}
