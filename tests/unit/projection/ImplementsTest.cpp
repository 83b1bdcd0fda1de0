#include "tests/unit/projection/TestPlatform.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <windows.h>
#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>
#include <thread>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

struct Thing : implements<Thing, IStringable, IClosable>
{
    hstring ToString() const { return L"thing"; }
    void Close() { throw hresult_access_denied(); }

    Alive alive;
};

struct Named : implements<Named, IStringable>
{
    hstring GetRuntimeClassName() const override { return L"Tests.Named"; }
    hstring ToString() const { return L"named"; }
};

struct OfAClass : implements<OfAClass, IStringable>
{
    using class_type = Windows::Foundation::Uri; // it only lends its name here
    hstring ToString() const { return L""; }
};

struct Nameless : implements<Nameless, Windows::Foundation::IInspectable>
{
};

struct Apartment : implements<Apartment, IStringable, non_agile, no_weak_ref>
{
    hstring ToString() const { return L""; }
};

struct Hidden : implements<Hidden, IStringable, cloaked<IClosable>>
{
    hstring ToString() const { return L""; }
    void Close() const noexcept {}
};

struct Initialized : implements<Initialized, IStringable>
{
    void InitializeComponent() { ++initializations; }
    hstring ToString() const { return L""; }

    int initializations = 0;
};

struct FailsToInitialize : implements<FailsToInitialize, IStringable>
{
    void InitializeComponent() { throw hresult_access_denied(); }
    hstring ToString() const { return L""; }

    Alive alive;
};

struct Keeper : implements<Keeper, IStringable>
{
    static void final_release(std::unique_ptr<Keeper> last) { s_kept = std::move(last); }
    hstring ToString() const { return L""; }

    static inline std::unique_ptr<Keeper> s_kept;
};

struct UsesItselfWhenDestroyed : implements<UsesItselfWhenDestroyed, IStringable>
{
    ~UsesItselfWhenDestroyed()
    {
        IStringable const self = *this;
        ++s_destroyed;
    }
    hstring ToString() const { return L""; }

    static inline int s_destroyed = 0;
};

struct TearOff : implements<TearOff, IStringable>
{
    hstring ToString() const { return L""; }
    int32_t query_interface_tearoff(guid const& id, void** object) const noexcept override
    {
        return is_guid_of<IClosable>(id) ? make<Thing>().as(id, object) : hresult(E_NOINTERFACE);
    }
};

std::vector<guid> IdsOf(Windows::Foundation::IInspectable const& object)
{
    com_array<guid> ids;
    uint32_t count = 0;
    guid* values = nullptr;
    check_hresult(static_cast<impl::inspectable_abi*>(get_abi(object))->GetIids(&count, &values));
    ids = com_array<guid>(values, count, take_ownership_from_abi);
    return {ids.begin(), ids.end()};
}

int32_t QueryForUnknown(void* object, void** result)
{
    return static_cast<impl::unknown_abi*>(object)->QueryInterface(guid_of<Windows::Foundation::IUnknown>(), result);
}

} // namespace

TEST(Implements, AnswersForEachInterface)
{
    auto const thing = make<Thing>();
    static_assert(std::is_same_v<decltype(thing), IStringable const>);
    EXPECT_EQ(thing.ToString(), L"thing");
    EXPECT_TRUE(thing.try_as<IClosable>());
    EXPECT_FALSE(thing.try_as<IPropertyValue>());
    EXPECT_THROW(thing.as<IPropertyValue>(), hresult_no_interface);
}

TEST(Implements, HasOneIdentity)
{
    auto const thing = make<Thing>();
    auto const first = thing.as<Windows::Foundation::IUnknown>();
    EXPECT_EQ(get_abi(first), get_abi(thing.as<IClosable>().as<Windows::Foundation::IUnknown>()));
    EXPECT_EQ(get_abi(thing.as<IStringable>()), get_abi(thing.as<IClosable>().as<IStringable>()));
}

TEST(Implements, ClearsTheResultOfAQueryThatFails)
{
    auto const thing = make<Thing>();
    void* result = &result;
    EXPECT_EQ(thing.as(guid_of<IPropertyValue>(), &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(thing.as(guid_of<IStringable>(), nullptr), E_POINTER);
}

TEST(Implements, TellsItsInterfacesButNoHiddenOnes)
{
    EXPECT_EQ(IdsOf(make<Thing>()), (std::vector{guid_of<IStringable>(), guid_of<IClosable>()}));
    EXPECT_EQ(IdsOf(make<Hidden>()), std::vector{guid_of<IStringable>()});
    EXPECT_TRUE(make<Hidden>().try_as<IClosable>());
}

TEST(Implements, TellingItsInterfacesFailsWithoutMemory)
{
    auto const thing = make<Thing>();
    TaskMemAllocCall const fails([](auto, auto) { return nullptr; });
    uint32_t count = 7;
    guid* ids = nullptr;
    EXPECT_EQ(static_cast<impl::inspectable_abi*>(get_abi(thing))->GetIids(&count, &ids), E_OUTOFMEMORY);
    EXPECT_EQ(count, 0u);
}

TEST(Implements, TellsItsRuntimeClassName)
{
    EXPECT_EQ(get_class_name(make<Named>()), L"Tests.Named");
    EXPECT_EQ(get_class_name(make<Thing>()), L"Windows.Foundation.IStringable");
    EXPECT_EQ(get_class_name(make_self<OfAClass>().as<IStringable>()), L"Windows.Foundation.Uri");
    EXPECT_EQ(get_trust_level(make<Named>()), Windows::Foundation::TrustLevel::BaseTrust);
}

TEST(Implements, HasNoNameWithoutAnInterface)
{
    EXPECT_THROW(get_class_name(make<Nameless>()), hresult_not_implemented);
}

TEST(Implements, IsAgileUnlessItSaysOtherwise)
{
    auto const agile = make<Thing>().try_as<impl::IAgileObject>();
    EXPECT_TRUE(agile);
    void* identity = nullptr;
    EXPECT_EQ(QueryForUnknown(agile.get(), &identity), S_OK);
    EXPECT_EQ(com_ptr<impl::unknown_abi>(identity, take_ownership_from_abi).get(), agile.get());
    EXPECT_FALSE(make<Apartment>().try_as<impl::IAgileObject>());
}

TEST(Implements, ExceptionsOfMethodsBecomeCodesAndExceptionsAgain)
{
    auto const closable = make<Thing>().as<IClosable>();
    EXPECT_EQ(static_cast<impl::abi<IClosable>::type*>(get_abi(closable))->Close(), E_ACCESSDENIED);
    EXPECT_THROW(closable.Close(), hresult_access_denied);
}

TEST(Implements, IsDestroyedWithItsLastReference)
{
    auto const before = Alive::Count();
    {
        auto const thing = make<Thing>();
        auto const closable = thing.as<IClosable>();
        EXPECT_EQ(Alive::Count(), before + 1);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Implements, CountsReferencesFromSeveralThreads)
{
    auto const before = Alive::Count();
    {
        auto const thing = make<Thing>();
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
        {
            threads.emplace_back([thing] {
                for (int j = 0; j < 20'000; ++j)
                {
                    auto const copy = thing;
                    auto const other = copy.as<IClosable>();
                }
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

TEST(Implements, KeepsItsModuleLoaded)
{
    auto const before = get_module_lock().load();
    {
        auto const thing = make<Thing>();
        EXPECT_EQ(get_module_lock().load(), before + 1);
    }
    EXPECT_EQ(get_module_lock().load(), before);
}

TEST(Implements, IsInitializedOnceAfterItsConstruction)
{
    EXPECT_EQ(make_self<Initialized>()->initializations, 1);
}

TEST(Implements, IsDestroyedWhenItsInitializationFails)
{
    auto const before = Alive::Count();
    EXPECT_THROW(make<FailsToInitialize>(), hresult_access_denied);
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Implements, FinalReleaseTakesTheObject)
{
    auto* const kept = make_self<Keeper>().get();
    EXPECT_EQ(Keeper::s_kept.get(), kept);
    Keeper::s_kept = nullptr;
}

TEST(Implements, MayUseItselfWhileItIsDestroyed)
{
    UsesItselfWhenDestroyed::s_destroyed = 0;
    make<UsesItselfWhenDestroyed>();
    EXPECT_EQ(UsesItselfWhenDestroyed::s_destroyed, 1);
}

TEST(Implements, AnswersForTearOffs)
{
    EXPECT_TRUE(make<TearOff>().try_as<IClosable>());
    EXPECT_FALSE(make<TearOff>().try_as<IPropertyValue>());
}

TEST(Implements, IsFoundBehindItsInterface)
{
    auto const self = make_self<Thing>();
    IStringable const thing = *self;
    EXPECT_EQ(get_self<Thing>(thing), self.get());
    EXPECT_EQ(get_self<Thing>(thing.as<IClosable>()), self.get());
    EXPECT_EQ(static_cast<void*>(to_abi<IClosable>(self.get())), get_abi(thing.as<IClosable>()));
}
