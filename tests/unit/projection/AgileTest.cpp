#include "tests/unit/projection/TestPlatform.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <windows.h>
#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

struct AgileThing : implements<AgileThing, IStringable>
{
    hstring ToString() const { return L"thing"; }

    Alive alive;
};

struct OfAnApartment : implements<OfAnApartment, IStringable, non_agile>
{
    hstring ToString() const { return L""; }
};

using Handler = EventHandler<int32_t>;

// A delegate of an apartment: it is not agile.
struct ApartmentDelegate : impl::abi<Handler>::type
{
    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept override
    {
        auto const known = is_guid_of<Handler>(id) || is_guid_of<Windows::Foundation::IUnknown>(id);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    uint32_t __stdcall AddRef() noexcept override { return 2; }
    uint32_t __stdcall Release() noexcept override { return 1; }
    int32_t __stdcall Invoke(void*, int32_t value) noexcept override
    {
        received = value;
        return S_OK;
    }

    int32_t received = 0;
};

// The system's agile reference, as far as these tests need it.
struct TestAgileReference : impl::IAgileReference
{
    int32_t __stdcall QueryInterface(guid const&, void** object) noexcept override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    uint32_t __stdcall AddRef() noexcept override { return 2; }
    uint32_t __stdcall Release() noexcept override { return 1; }
    int32_t __stdcall Resolve(guid const& id, void** object) noexcept override
    {
        ++resolved;
        return target->QueryInterface(id, object);
    }

    ApartmentDelegate* target = nullptr;
    int resolved = 0;
};

} // namespace

TEST(AgileRef, KeepsAnAgileObject)
{
    auto const before = Alive::Count();
    {
        auto thing = make<AgileThing>();
        auto const agile = make_agile(thing);
        thing = nullptr;
        EXPECT_EQ(agile.get().ToString(), L"thing");
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(AgileRef, OfNothingIsNothing)
{
    agile_ref<IStringable> const agile;
    EXPECT_FALSE(agile);
    EXPECT_FALSE(agile.get());
    EXPECT_FALSE(make_agile(IStringable()));
}

TEST(AgileRef, FailureToMakeOneIsRaised)
{
    GetAgileReferenceCall const fails([](auto, auto, auto, auto, auto) { return E_OUTOFMEMORY; });
    EXPECT_THROW(make_agile(make<OfAnApartment>()), std::bad_alloc);
}

TEST(AgileDelegate, AnAgileHandlerIsKeptAsItIs)
{
    Handler const handler = [](auto&&, auto&&) {};
    EXPECT_EQ(get_abi(impl::make_agile_delegate(handler)), get_abi(handler));
    EXPECT_FALSE(impl::make_agile_delegate(Handler()));
}

TEST(AgileDelegate, AnApartmentsHandlerIsCalledThroughAnAgileReference)
{
    ApartmentDelegate target;
    TestAgileReference reference;
    reference.target = &target;
    GetAgileReferenceCall const system([&](auto, auto, auto, auto, void** result) {
        *result = &reference;
        return S_OK;
    });
    winrt::event<Handler> event;
    event.add(Handler(&target, take_ownership_from_abi));
    event(nullptr, 7);
    EXPECT_EQ(target.received, 7);
    EXPECT_EQ(reference.resolved, 1);
}
