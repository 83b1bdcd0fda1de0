#include "tests/unit/projection/TestPlatform.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <windows.h>
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::UI::Xaml;

namespace
{

struct Provider : implements<Provider, Markup::IXamlMetadataProvider>
{
    Markup::IXamlType GetXamlType(Interop::TypeName const& type)
    {
        asked = type;
        return nullptr;
    }
    Markup::IXamlType GetXamlType(hstring const& name)
    {
        asked = {name, Interop::TypeKind::Custom};
        return nullptr;
    }
    com_array<Markup::XmlnsDefinition> GetXmlnsDefinitions() const
    {
        return {Markup::XmlnsDefinition{L"urn:a", L"A"}, Markup::XmlnsDefinition{L"urn:b", L"B"}};
    }

    Interop::TypeName asked;
};

struct Fragile
{
    Fragile() = default;
    Fragile(Fragile const& other) : alive(other.alive)
    {
        if (--s_copiesLeft < 0)
        {
            throw std::bad_alloc();
        }
    }

    Alive alive;
    static inline int s_copiesLeft = 0;
};

} // namespace

TEST(ArrayOwned, HoldsItsElements)
{
    com_array<hstring> const values{L"a", L"b"};
    EXPECT_EQ(values.size(), 2u);
    EXPECT_EQ(values[1], L"b");
    EXPECT_EQ((com_array<int>(3, 7)[2]), 7);
    EXPECT_TRUE(com_array<int>(0u).empty());
    EXPECT_EQ(com_array<int>(std::vector{1, 2}).size(), 2u);
}

TEST(ArrayOwned, MovesAndDetaches)
{
    com_array<hstring> values{L"a"};
    com_array<hstring> moved(std::move(values));
    EXPECT_TRUE(values.empty());
    com_array<hstring> assigned{L"old"};
    assigned = std::move(moved);
    auto const [size, data] = assigned.detach();
    EXPECT_TRUE(assigned.empty());
    com_array<hstring> const back(data, size, take_ownership_from_abi);
    EXPECT_EQ(back[0], L"a");
}

TEST(ArrayOwned, DestroysItsElements)
{
    auto const before = Alive::Count();
    {
        com_array<Alive> const values(3);
        EXPECT_EQ(Alive::Count(), before + 3);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(ArrayOwned, FailureToFillItLeavesNothing)
{
    auto const before = Alive::Count();
    Fragile::s_copiesLeft = 2;
    EXPECT_THROW(com_array<Fragile>(5), std::bad_alloc);
    EXPECT_EQ(Alive::Count(), before);
    TaskMemAllocCall const fails([](auto, auto) { return nullptr; });
    EXPECT_THROW(com_array<int>(5), std::bad_alloc);
}

TEST(ArrayView, LendsContainers)
{
    std::vector<int> vector{1, 2, 3};
    int array[] = {4, 5};
    array_view<int> const view(vector);
    EXPECT_EQ(view.size(), 3u);
    EXPECT_EQ(view[2], 3);
    EXPECT_EQ(array_view<int>(array).size(), 2u);
    auto const last = [](array_view<int const> values) { return values[values.size() - 1]; };
    EXPECT_EQ(last({6, 7}), 7);
    EXPECT_EQ(last(array), 5);
    EXPECT_TRUE(array_view<int>().empty());
}

TEST(ArrayArguments, StructuresWithStringsCrossTheEdge)
{
    auto const self = make_self<Provider>();
    Markup::IXamlMetadataProvider const provider = *self;
    EXPECT_FALSE(provider.GetXamlType(Interop::TypeName{L"Tests.Page", Interop::TypeKind::Metadata}));
    EXPECT_EQ(self->asked, (Interop::TypeName{L"Tests.Page", Interop::TypeKind::Metadata}));
    EXPECT_FALSE(provider.GetXamlType(L"Tests.Other"));
    EXPECT_EQ(self->asked.Name, L"Tests.Other");
}

TEST(ArrayArguments, ArraysOfStructuresAreReturned)
{
    auto const definitions = make<Provider>().GetXmlnsDefinitions();
    ASSERT_EQ(definitions.size(), 2u);
    EXPECT_EQ(definitions[1], (Markup::XmlnsDefinition{L"urn:b", L"B"}));
}
