#include <windows.h>
#include <winrt/base.h>

#include <gtest/gtest.h>
#include <thread>

using namespace winrt;

namespace
{

struct CountedTraits
{
    using type = int;
    static void close(type value) noexcept { s_closed.push_back(value); }
    static type invalid() noexcept { return 0; }

    static inline std::vector<int> s_closed;
};

using Counted = winrt::handle_type<CountedTraits>;

} // namespace

TEST(Handle, ClosesWhatItHoldsOnce)
{
    CountedTraits::s_closed.clear();
    {
        Counted first(1);
        Counted second(std::move(first));
        EXPECT_FALSE(first);
        EXPECT_EQ(second.get(), 1);
        second = Counted(2);
        EXPECT_EQ(CountedTraits::s_closed, std::vector{1});
    }
    EXPECT_EQ(CountedTraits::s_closed, (std::vector{1, 2}));
}

TEST(Handle, DetachedValuesAreNotClosed)
{
    CountedTraits::s_closed.clear();
    {
        Counted value(3);
        EXPECT_EQ(value.detach(), 3);
    }
    EXPECT_TRUE(CountedTraits::s_closed.empty());
}

TEST(Handle, PutAndAttachCloseTheOldValue)
{
    CountedTraits::s_closed.clear();
    Counted value(4);
    *value.put() = 5;
    value.attach(6);
    EXPECT_EQ(CountedTraits::s_closed, (std::vector{4, 5}));
    value.close();
    EXPECT_FALSE(value);
}

TEST(Handle, InvalidValuesOfTheSystemAreFalse)
{
    EXPECT_FALSE(winrt::handle());
    EXPECT_FALSE(winrt::file_handle(INVALID_HANDLE_VALUE));
    EXPECT_TRUE(winrt::handle(check_pointer(CreateEventW(nullptr, FALSE, FALSE, nullptr))));
}

TEST(HandleSlimMutex, HoldsOneWriterOrManyReaders)
{
    slim_mutex mutex;
    {
        slim_lock_guard const guard(mutex);
        std::thread([&] { EXPECT_FALSE(mutex.try_lock()); }).join();
    }
    {
        slim_shared_lock_guard const guard(mutex);
        std::thread([&] {
            EXPECT_FALSE(mutex.try_lock());
            slim_shared_lock_guard const other(mutex);
        }).join();
    }
    EXPECT_TRUE(mutex.try_lock());
    mutex.unlock();
}
