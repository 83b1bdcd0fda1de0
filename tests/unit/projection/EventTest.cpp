#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>
#include <thread>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

using Handler = EventHandler<int32_t>;

Handler Adding(int& sum)
{
    return [&sum](auto&&, int32_t value) { sum += value; };
}

struct Source : implements<Source, Collections::IObservableMap<hstring, int32_t>>
{
    event_token MapChanged(Collections::MapChangedEventHandler<hstring, int32_t> const& handler)
    {
        return changed.add(handler);
    }
    void MapChanged(event_token token) { changed.remove(token); }

    winrt::event<Collections::MapChangedEventHandler<hstring, int32_t>> changed;
};

struct CoreFactory : implements<CoreFactory, Windows::ApplicationModel::Core::ICoreApplication>
{
    hstring Id() const { return L"core"; }
    event_token Suspending(EventHandler<Windows::ApplicationModel::SuspendingEventArgs> const& handler)
    {
        return suspending.add(handler);
    }
    void Suspending(event_token token) { suspending.remove(token); }
    event_token Resuming(EventHandler<Windows::Foundation::IInspectable> const&) const { return {}; }
    void Resuming(event_token) const {}
    Collections::IPropertySet Properties() const { return nullptr; }
    Windows::ApplicationModel::Core::CoreApplicationView GetCurrentView() const { return nullptr; }
    void Run(Windows::ApplicationModel::Core::IFrameworkViewSource const&) const {}
    void RunWithActivationFactories(IGetActivationFactory const&) const {}

    winrt::event<EventHandler<Windows::ApplicationModel::SuspendingEventArgs>> suspending;
};

} // namespace

TEST(Event, CallsItsHandlersInTheirOrder)
{
    winrt::event<Handler> event;
    std::wstring order;
    event.add([&](auto&&, auto&&) { order += L"a"; });
    event.add([&](auto&&, auto&&) { order += L"b"; });
    event(nullptr, 1);
    EXPECT_EQ(order, L"ab");
}

TEST(Event, WithoutHandlersIsFalse)
{
    winrt::event<Handler> event;
    EXPECT_FALSE(event);
    auto const token = event.add([](auto&&, auto&&) {});
    EXPECT_TRUE(event);
    event.remove(token);
    EXPECT_FALSE(event);
    event.add([](auto&&, auto&&) {});
    event.clear();
    EXPECT_FALSE(event);
}

TEST(Event, RemovesTheHandlerOfATokenAlone)
{
    winrt::event<Handler> event;
    int sum = 0;
    int other = 0;
    auto const token = event.add(Adding(sum));
    event.add(Adding(other));
    event.remove(token);
    event.remove(token);
    event.remove(event_token{});
    event(nullptr, 1);
    EXPECT_EQ(sum, 0);
    EXPECT_EQ(other, 1);
}

TEST(Event, AHandlerAddedTwiceHasTwoTokens)
{
    winrt::event<Handler> event;
    int sum = 0;
    auto const handler = Adding(sum);
    auto const first = event.add(handler);
    EXPECT_NE(first, event.add(handler));
    event(nullptr, 1);
    EXPECT_EQ(sum, 2);
    event.remove(first);
    event(nullptr, 1);
    EXPECT_EQ(sum, 3);
}

TEST(Event, AHandlerMayRemoveItselfDuringARaise)
{
    winrt::event<Handler> event;
    int calls = 0;
    event_token token;
    token = event.add([&](auto&&, auto&&) {
        ++calls;
        event.remove(token);
    });
    event(nullptr, 1);
    event(nullptr, 1);
    EXPECT_EQ(calls, 1);
}

TEST(Event, AHandlerAddedDuringARaiseGetsTheNext)
{
    winrt::event<Handler> event;
    int added = 0;
    event.add([&](auto&&, auto&&) {
        if (added == 0)
        {
            event.add(Adding(added));
        }
    });
    event(nullptr, 1);
    EXPECT_EQ(added, 0);
    event(nullptr, 1);
    EXPECT_EQ(added, 1);
}

TEST(Event, FailuresOfAHandlerStayWithIt)
{
    winrt::event<Handler> event;
    int sum = 0;
    event.add([](auto&&, auto&&) { throw hresult_access_denied(); });
    event.add(Adding(sum));
    EXPECT_NO_THROW(event(nullptr, 1));
    EXPECT_NO_THROW(event(nullptr, 1));
    EXPECT_EQ(sum, 2);
}

TEST(Event, AHandlerWhoseOwnerIsDisconnectedIsRemoved)
{
    for (auto const code : {0x80010108, 0x800706BA, 0x89020001})
    {
        winrt::event<Handler> event;
        int calls = 0;
        event.add([&, code](auto&&, auto&&) {
            ++calls;
            throw hresult_error(static_cast<int32_t>(code));
        });
        event(nullptr, 1);
        event(nullptr, 1);
        EXPECT_EQ(calls, 1);
    }
}

TEST(Event, ReleasesRemovedHandlersOutsideItsLock)
{
    winrt::event<Handler> event;
    struct RemovesWhenDestroyed
    {
        winrt::event<Handler>* target;
        explicit RemovesWhenDestroyed(winrt::event<Handler>* event) : target(event) {}
        RemovesWhenDestroyed(RemovesWhenDestroyed&& other) noexcept : target(std::exchange(other.target, nullptr)) {}
        ~RemovesWhenDestroyed()
        {
            if (target)
            {
                target->remove(event_token{1'000}); // would deadlock inside the lock
            }
        }
    };
    auto const token = event.add([guard = RemovesWhenDestroyed(&event)](auto&&, auto&&) {});
    event.remove(token);
    event.add([guard = RemovesWhenDestroyed(&event)](auto&&, auto&&) {});
    event.clear();
    EXPECT_FALSE(event);
}

TEST(Event, IsSafeOnSeveralThreads)
{
    auto const before = Alive::Count();
    {
        winrt::event<Handler> event;
        std::atomic<int> calls = 0;
        event.add([&](auto&&, auto&&) { ++calls; });
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
        {
            threads.emplace_back([&] {
                for (int j = 0; j < 500; ++j)
                {
                    auto const token = event.add([alive = Alive()](auto&&, auto&&) {});
                    event(nullptr, 1);
                    event.remove(token);
                }
            });
        }
        for (auto& thread : threads)
        {
            thread.join();
        }
        EXPECT_EQ(calls, 1'500);
        EXPECT_EQ(Alive::Count(), before);
    }
}

TEST(EventRevoker, RemovesItsHandlerAtTheEndOfItsScope)
{
    auto const source = make_self<Source>();
    auto const map = source.as<Collections::IObservableMap<hstring, int32_t>>();
    int calls = 0;
    {
        auto const revoker = map.MapChanged(auto_revoke, [&](auto&&, auto&&) { ++calls; });
        EXPECT_TRUE(revoker);
        source->changed(map, nullptr);
    }
    source->changed(map, nullptr);
    EXPECT_EQ(calls, 1);
}

TEST(EventRevoker, RevokesOnceAndMoves)
{
    auto const source = make_self<Source>();
    auto const map = source.as<Collections::IObservableMap<hstring, int32_t>>();
    int calls = 0;
    auto first = map.MapChanged(auto_revoke, [&](auto&&, auto&&) { ++calls; });
    auto second = std::move(first);
    EXPECT_FALSE(first);
    source->changed(map, nullptr);
    EXPECT_EQ(calls, 1);
    second.revoke();
    second.revoke();
    source->changed(map, nullptr);
    EXPECT_EQ(calls, 1);
}

TEST(EventRevoker, DoesNotKeepTheSource)
{
    auto source = make_self<Source>();
    weak_ref<Source> const weak = source->get_weak();
    auto revoker =
        source.as<Collections::IObservableMap<hstring, int32_t>>().MapChanged(auto_revoke, [](auto&&, auto&&) {});
    source = nullptr;
    EXPECT_FALSE(weak.get());
    EXPECT_NO_THROW(revoker.revoke());
}

TEST(EventRevoker, ServesStaticEvents)
{
    using Windows::ApplicationModel::Core::CoreApplication;
    TestPlatform platform;
    auto const core = make_self<CoreFactory>();
    platform.Provide(L"Windows.ApplicationModel.Core.CoreApplication",
                     [&] { return core.as<Windows::Foundation::IInspectable>(); });
    {
        auto const revoker = CoreApplication::Suspending(auto_revoke, [](auto&&, auto&&) {});
        EXPECT_TRUE(core->suspending);
    }
    EXPECT_FALSE(core->suspending);
    auto const token = CoreApplication::Suspending([](auto&&, auto&&) {});
    EXPECT_TRUE(core->suspending);
    CoreApplication::Suspending(token);
    EXPECT_FALSE(core->suspending);
}
