#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

struct CountedThing : implements<CountedThing, IStringable, IClosable>
{
    hstring ToString() const { return L"thing"; }
    void Close() noexcept { closed = true; }

    bool closed = false;
    Alive alive;
};

// How many references an object has.
template <typename T>
uint32_t References(T const& object)
{
    auto* const unknown = static_cast<impl::unknown_abi*>(static_cast<void*>(get_abi(object)));
    unknown->AddRef();
    return unknown->Release();
}

} // namespace

TEST(ComPtr, CountsReferences)
{
    auto thing = make_self<CountedThing>();
    IStringable const held = *thing;
    EXPECT_EQ(References(held), 2u);
    auto copy = thing;
    EXPECT_EQ(References(held), 3u);
    auto moved = std::move(copy);
    EXPECT_FALSE(copy);
    EXPECT_EQ(References(held), 3u);
    moved = nullptr;
    thing = nullptr;
    EXPECT_EQ(References(held), 1u);
}

TEST(ComPtr, ReachesTheImplementation)
{
    auto const thing = make_self<CountedThing>();
    thing->Close();
    EXPECT_TRUE((*thing).closed);
    EXPECT_EQ(thing.as<IStringable>().ToString(), L"thing");
    EXPECT_THROW(thing.as<IPropertyValue>(), hresult_no_interface);
    EXPECT_FALSE(thing.try_as<IPropertyValue>());
    EXPECT_FALSE(com_ptr<CountedThing>().as<IStringable>());
}

TEST(ComPtr, HoldsInterfacesOfClassicCom)
{
    auto const thing = make<CountedThing>();
    auto const unknown = thing.as<::IUnknown>();
    EXPECT_EQ(References(thing), 2u);
    EXPECT_EQ(unknown.as<IStringable>().ToString(), L"thing");
    com_ptr<::IAgileObject> agile;
    thing.as(agile);
    EXPECT_TRUE(agile);
}

TEST(ComPtr, PutReleasesWhatItHeld)
{
    auto thing = make_self<CountedThing>();
    auto const before = Alive::Count();
    thing.put();
    EXPECT_EQ(Alive::Count(), before - 1);
}

TEST(ComPtr, CopiesInAndOut)
{
    auto const thing = make_self<CountedThing>();
    com_ptr<CountedThing> copy;
    copy.copy_from(thing.get());
    EXPECT_EQ(copy, thing);
    CountedThing* raw = nullptr;
    copy.copy_to(&raw);
    com_ptr<CountedThing> const owner(raw, take_ownership_from_abi);
    EXPECT_EQ(References(IStringable(*thing)), 4u);
}

TEST(ComPtr, CapturesFromFunctionsOfTheSystem)
{
    auto const fails = [](guid const&, void** object) noexcept -> int32_t {
        *object = nullptr;
        return E_ACCESSDENIED;
    };
    com_ptr<::IUnknown> result;
    EXPECT_THROW(result.capture(fails), hresult_access_denied);
    EXPECT_FALSE(result.try_capture(fails));
    auto const thing = make<CountedThing>();
    result.capture([&](guid const& id, void** object) noexcept { return thing.as(id, object); });
    EXPECT_TRUE(result);
}

TEST(ComPtrOfProjectedInterface, SelfAssignmentKeepsTheObject)
{
    IStringable thing = make<CountedThing>();
    auto& same = thing;
    thing = same;
    EXPECT_EQ(References(thing), 1u);
    thing = std::move(same);
    ASSERT_TRUE(thing);
    EXPECT_EQ(References(thing), 1u);
}

TEST(ComPtrOfProjectedInterface, NullGivesNull)
{
    IStringable const nothing;
    EXPECT_FALSE(nothing);
    EXPECT_FALSE(nothing.as<IClosable>());
    EXPECT_FALSE(nothing.try_as<IClosable>());
    EXPECT_EQ(nothing, nullptr);
}

TEST(ComPtrOfProjectedInterface, EqualsAnotherInterfaceOfItsObject)
{
    auto const thing = make<CountedThing>();
    EXPECT_EQ(thing, thing.as<IClosable>());
    EXPECT_NE(thing, make<CountedThing>());
    EXPECT_NE(thing, nullptr);
}

TEST(ComPtrOfProjectedInterface, PassesInAndOutOfTheBinaryInterface)
{
    auto thing = make<CountedThing>();
    void* copy = nullptr;
    copy_to_abi(thing, copy);
    EXPECT_EQ(References(thing), 2u);
    IStringable other;
    attach_abi(other, copy);
    EXPECT_EQ(other, thing);
    copy_from_abi(other, get_abi(thing));
    EXPECT_EQ(References(thing), 2u);
    auto* const detached = detach_abi(thing);
    EXPECT_FALSE(thing);
    attach_abi(thing, detached);
    EXPECT_EQ(References(thing), 2u);
}
