#include "tests/unit/projection/AbiFacts.h"

#include <windows.h>

using namespace test;
using winrt::impl::inspectable_abi;
using winrt::impl::sha1;
using winrt::impl::sha1_digest;
using winrt::impl::unknown_abi;

// The interfaces that the base declares itself, as the system documents them.

TEST(BaseAbi, UnknownAndInspectableHaveThreeAndSixSlots)
{
    EXPECT_EQ(SlotOf(&unknown_abi::QueryInterface), 0u);
    EXPECT_EQ(SlotOf(&unknown_abi::AddRef), 1u);
    EXPECT_EQ(SlotOf(&unknown_abi::Release), 2u);
    EXPECT_EQ(SlotOf(&inspectable_abi::GetIids), 3u);
    EXPECT_EQ(SlotOf(&inspectable_abi::GetRuntimeClassName), 4u);
    EXPECT_EQ(SlotOf(&inspectable_abi::GetTrustLevel), 5u);
    EXPECT_EQ(SlotCount<inspectable_abi>(), 6u);
}

TEST(BaseAbi, ServicesOfObjectsHaveTheirSlots)
{
    EXPECT_EQ(SlotOf(&winrt::impl::abi<winrt::Windows::Foundation::IActivationFactory>::type::ActivateInstance), 6u);
    EXPECT_EQ(SlotOf(&winrt::impl::IWeakReference::Resolve), 3u);
    EXPECT_EQ(SlotOf(&winrt::impl::IWeakReferenceSource::GetWeakReference), 3u);
    EXPECT_EQ(SlotOf(&winrt::impl::IAgileReference::Resolve), 3u);
    EXPECT_EQ(SlotOf(&winrt::impl::IContextCallback::ContextCallback), 3u);
}

TEST(BaseAbi, IdsAreTheSystems)
{
    EXPECT_EQ(winrt::guid_of<winrt::Windows::Foundation::IUnknown>(), winrt::guid(__uuidof(::IUnknown)));
    EXPECT_EQ(winrt::guid_of<winrt::impl::IAgileObject>(), winrt::guid(__uuidof(::IAgileObject)));
    EXPECT_EQ(winrt::guid_of<winrt::Windows::Foundation::IInspectable>(),
              winrt::guid("AF86E2E0-B12D-4C6A-9C5A-D7AA65101E90"));
    EXPECT_EQ(winrt::guid_of<winrt::Windows::Foundation::IActivationFactory>(),
              winrt::guid("00000035-0000-0000-C000-000000000046"));
    EXPECT_EQ(winrt::guid_of<winrt::impl::IWeakReference>(), winrt::guid("00000037-0000-0000-C000-000000000046"));
    EXPECT_EQ(winrt::guid_of<winrt::impl::IWeakReferenceSource>(), winrt::guid("00000038-0000-0000-C000-000000000046"));
    EXPECT_EQ(winrt::guid_of<winrt::impl::IAgileReference>(), winrt::guid("C03F6A43-65A4-9818-987E-E0B810D2A6F2"));
}

TEST(BaseAbi, ProjectedTypesAreAsLargeAsAPointer)
{
    EXPECT_EQ(sizeof(winrt::hstring), sizeof(void*));
    EXPECT_EQ(sizeof(winrt::Windows::Foundation::IInspectable), sizeof(void*));
    EXPECT_EQ(sizeof(winrt::com_ptr<unknown_abi>), sizeof(void*));
}

TEST(BaseAbi, TheDigestOfIdsIsSha1)
{
    constexpr auto digest = sha1(std::array<uint8_t, 3>{'a', 'b', 'c'}); // the standard's own example
    static_assert(digest == sha1_digest{0xA9993E36, 0x4706816A, 0xBA3E2571, 0x7850C26C, 0x9CD0D89D});
    constexpr auto twoBlocks = sha1(std::array<uint8_t, 56>{
        'a', 'b', 'c', 'd', 'b', 'c', 'd', 'e', 'c', 'd', 'e', 'f', 'd', 'e', 'f', 'g', 'e', 'f', 'g',
        'h', 'f', 'g', 'h', 'i', 'g', 'h', 'i', 'j', 'h', 'i', 'j', 'k', 'i', 'j', 'k', 'l', 'j', 'k',
        'l', 'm', 'k', 'l', 'm', 'n', 'l', 'm', 'n', 'o', 'm', 'n', 'o', 'p', 'n', 'o', 'p', 'q'});
    static_assert(twoBlocks == sha1_digest{0x84983E44, 0x1C3BD26E, 0xBAAE4AA1, 0xF95129E5, 0xE54670F1});
}
