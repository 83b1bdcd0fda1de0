#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>
#include <thread>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

struct WeakThing : implements<WeakThing, IStringable, IClosable>
{
    hstring ToString() const { return L"thing"; }
    void Close() const noexcept {}

    Alive alive;
};

struct Unweak : implements<Unweak, IStringable, no_weak_ref>
{
    hstring ToString() const { return L""; }
};

struct LeavesAWeakReference : implements<LeavesAWeakReference, IStringable>
{
    ~LeavesAWeakReference() { s_left = make_weak<IStringable>(*this); }
    hstring ToString() const { return L""; }

    static inline weak_ref<IStringable> s_left;
};

} // namespace

TEST(WeakRef, DoesNotKeepItsObject)
{
    auto const before = Alive::Count();
    auto thing = make<WeakThing>();
    auto const weak = make_weak(thing);
    EXPECT_EQ(weak.get(), thing);
    thing = nullptr;
    EXPECT_EQ(Alive::Count(), before);
    EXPECT_FALSE(weak.get());
    EXPECT_TRUE(weak);
}

TEST(WeakRef, GivesTheInterfaceItWasMadeFor)
{
    auto const thing = make<WeakThing>();
    weak_ref<IClosable> const weak = thing.as<IClosable>();
    static_assert(std::is_same_v<decltype(weak.get()), IClosable>);
    EXPECT_EQ(get_abi(weak.get()), get_abi(thing.as<IClosable>()));
}

TEST(WeakRef, OfAnImplementationGivesTheImplementation)
{
    auto self = make_self<WeakThing>();
    auto const weak = self->get_weak();
    static_assert(std::is_same_v<decltype(weak.get()), com_ptr<WeakThing>>);
    EXPECT_EQ(weak.get().get(), self.get());
    EXPECT_EQ(self->get_strong().get(), self.get());
    self = nullptr;
    EXPECT_FALSE(weak.get());
}

TEST(WeakRef, OfNothingIsNothing)
{
    weak_ref<IStringable> const weak;
    EXPECT_FALSE(weak);
    EXPECT_FALSE(weak.get());
    EXPECT_FALSE(make_weak(IStringable()));
}

TEST(WeakRef, ObjectsMayRefuse)
{
    EXPECT_THROW(make_weak(make<Unweak>()), hresult_no_interface);
}

TEST(WeakRef, SeveralLeadToOneObject)
{
    auto thing = make<WeakThing>();
    auto const first = make_weak(thing);
    auto const second = make_weak(thing);
    auto const copy = first;
    EXPECT_EQ(first.get(), second.get());
    EXPECT_EQ(copy.get(), thing);
}

TEST(WeakRef, MadeWhileItsObjectIsDestroyedLeadsNowhere)
{
    make<LeavesAWeakReference>();
    EXPECT_FALSE(LeavesAWeakReference::s_left.get());
    LeavesAWeakReference::s_left = nullptr;
}

TEST(WeakRef, CountsStayRightWhenTheFirstIsMadeUnderLoad)
{
    auto const before = Alive::Count();
    for (int round = 0; round < 200; ++round)
    {
        auto const thing = make<WeakThing>();
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
        {
            threads.emplace_back([&thing] {
                auto const weak = make_weak(thing);
                auto const copy = thing;
                EXPECT_EQ(weak.get(), thing);
            });
        }
        for (auto& thread : threads)
        {
            thread.join();
        }
        EXPECT_EQ(Alive::Count(), before + 1);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(WeakRef, ResolvesToAWholeObjectOrToNone)
{
    auto const before = Alive::Count();
    for (int round = 0; round < 500; ++round)
    {
        auto thing = make<WeakThing>();
        auto const weak = make_weak(thing);
        std::atomic<bool> go = false;
        std::thread resolver([&] {
            go = true;
            while (auto const strong = weak.get())
            {
                EXPECT_EQ(strong.ToString(), L"thing");
            }
        });
        while (!go)
        {
            std::this_thread::yield();
        }
        thing = nullptr;
        resolver.join();
        EXPECT_FALSE(weak.get());
        EXPECT_EQ(Alive::Count(), before);
    }
}
