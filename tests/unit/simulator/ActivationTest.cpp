#include "simulator/model/Activation.h"

#include <gtest/gtest.h>

TEST(Activation, ComesBackFromItsWords)
{
    for (auto const kind : {sim::ActivationKind::Launch, sim::ActivationKind::Protocol, sim::ActivationKind::Suspend})
    {
        auto const back = sim::Activation::FromWords(sim::Activation{L"7", kind, L"a b"}.Words());
        ASSERT_TRUE(back);
        EXPECT_EQ(back->id, L"7");
        EXPECT_EQ(back->kind, kind);
        EXPECT_EQ(back->argument, L"a b");
    }
}

TEST(Activation, IsNotReadFromOtherWords)
{
    EXPECT_FALSE(sim::Activation::FromWords({}));
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"launch"}));
    EXPECT_FALSE(sim::Activation::FromWords({L"7", L"start", L""}));
}
