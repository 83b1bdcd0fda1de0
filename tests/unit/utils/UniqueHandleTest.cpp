#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>

using namespace zant;

namespace
{

HANDLE NewEvent()
{
    return CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

bool IsOpen(HANDLE handle)
{
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != FALSE;
}

} // namespace

TEST(UniqueHandle, OwnsNothingAtFirst)
{
    UniqueHandle const handle;
    EXPECT_FALSE(handle);
    EXPECT_EQ(handle.Get(), nullptr);
}

TEST(UniqueHandle, TakesBothOfTheSystemsWordsForNone)
{
    EXPECT_FALSE(UniqueHandle(nullptr));
    EXPECT_FALSE(UniqueHandle(INVALID_HANDLE_VALUE));
    EXPECT_EQ(UniqueHandle(INVALID_HANDLE_VALUE).Get(), nullptr);
}

TEST(UniqueHandle, ClosesWhatItOwns)
{
    auto const event = NewEvent();
    {
        UniqueHandle const handle(event);
        EXPECT_TRUE(handle);
        EXPECT_TRUE(IsOpen(event));
    }
    EXPECT_FALSE(IsOpen(event));
}

TEST(UniqueHandle, IsMovedWithItsOwnership)
{
    auto const event = NewEvent();
    UniqueHandle first(event);
    UniqueHandle second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_EQ(second.Get(), event);
    UniqueHandle third(NewEvent());
    auto const former = third.Get();
    third = std::move(second);
    EXPECT_FALSE(IsOpen(former));
    EXPECT_EQ(third.Get(), event);
    EXPECT_TRUE(IsOpen(event));
}

TEST(UniqueHandle, ResetClosesOnce)
{
    UniqueHandle handle(NewEvent());
    auto const event = handle.Get();
    handle.Reset();
    EXPECT_FALSE(handle);
    EXPECT_FALSE(IsOpen(event));
    handle.Reset();
}
