#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

using Handler = EventHandler<hstring>;

struct Receiver : implements<Receiver, IStringable>
{
    hstring ToString() const { return L""; }
    void OnEvent(Windows::Foundation::IInspectable const&, hstring const& text) { received = text; }

    hstring received;
    Alive alive;
};

hstring lastFree;

void FreeFunction(Windows::Foundation::IInspectable const&, hstring const& text)
{
    lastFree = text;
}

} // namespace

TEST(Delegate, CallsALambda)
{
    hstring received;
    Handler const handler = [&](Windows::Foundation::IInspectable const&, hstring const& text) { received = text; };
    handler(nullptr, L"text");
    EXPECT_EQ(received, L"text");
}

TEST(Delegate, CallsAGenericLambda)
{
    hstring received;
    Handler const handler = [&](auto&&, auto&& text) { received = text; };
    handler(nullptr, L"text");
    EXPECT_EQ(received, L"text");
}

TEST(Delegate, CallsAFunction)
{
    Handler const handler = &FreeFunction;
    handler(nullptr, L"free");
    EXPECT_EQ(lastFree, L"free");
}

TEST(Delegate, CallsAMethodOfAPlainObject)
{
    struct Plain
    {
        void OnEvent(Windows::Foundation::IInspectable const&, hstring const& text) { received = text; }
        hstring received;
    } plain;
    Handler const handler(&plain, &Plain::OnEvent);
    handler(nullptr, L"plain");
    EXPECT_EQ(plain.received, L"plain");
}

TEST(Delegate, KeepsAnObjectGivenByStrongReference)
{
    auto const before = Alive::Count();
    auto receiver = make_self<Receiver>();
    Handler handler(receiver->get_strong(), &Receiver::OnEvent);
    handler(nullptr, L"strong");
    EXPECT_EQ(receiver->received, L"strong");
    receiver = nullptr;
    EXPECT_EQ(Alive::Count(), before + 1);
    handler = nullptr;
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Delegate, DoesNothingWhenItsWeakObjectIsGone)
{
    auto const before = Alive::Count();
    auto receiver = make_self<Receiver>();
    Handler const handler(receiver->get_weak(), &Receiver::OnEvent);
    handler(nullptr, L"weak");
    EXPECT_EQ(receiver->received, L"weak");
    receiver = nullptr;
    EXPECT_EQ(Alive::Count(), before);
    EXPECT_NO_THROW(handler(nullptr, L"gone"));
}

TEST(Delegate, FailuresCrossTheEdgeAsCodes)
{
    Handler const handler = [](auto&&, auto&&) { throw hresult_access_denied(); };
    EXPECT_THROW(handler(nullptr, L""), hresult_access_denied);
    EXPECT_EQ(static_cast<impl::abi<Handler>::type*>(get_abi(handler))->Invoke(nullptr, nullptr), E_ACCESSDENIED);
}

TEST(Delegate, ValuesCrossTheEdgeUnchanged)
{
    AsyncStatus status{};
    AsyncActionCompletedHandler const handler = [&](IAsyncAction const&, AsyncStatus value) { status = value; };
    handler(nullptr, AsyncStatus::Error);
    EXPECT_EQ(status, AsyncStatus::Error);
}

TEST(Delegate, AnswersForItsIdAndMayBeCalledAnywhere)
{
    Handler const handler = [](auto&&, auto&&) {};
    EXPECT_TRUE(handler.try_as<Handler>());
    EXPECT_TRUE(handler.try_as<impl::IAgileObject>());
    EXPECT_FALSE(handler.try_as<AsyncActionCompletedHandler>());
    EXPECT_FALSE(handler.try_as<Windows::Foundation::IInspectable>());
}

TEST(Delegate, DestroysItsCallableWithItsLastReference)
{
    auto const before = Alive::Count();
    {
        Handler const handler = [alive = Alive()](auto&&, auto&&) {};
        auto const copy = handler;
        EXPECT_EQ(Alive::Count(), before + 1);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Delegate, TakesCallablesThatCannotBeCopied)
{
    int received = 0;
    auto number = std::make_unique<int>(7);
    Handler const handler = [&, number = std::move(number)](auto&&, auto&&) { received = *number; };
    handler(nullptr, L"");
    EXPECT_EQ(received, 7);
}

TEST(Delegate, NullIsFalse)
{
    EXPECT_FALSE(Handler());
    EXPECT_FALSE(Handler(nullptr));
}
