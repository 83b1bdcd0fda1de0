// The interfaces of an implementation, and the markers that may stand among them.
#pragma once
#include "winrt/base/produce.h"

namespace winrt
{

namespace impl
{

struct marker
{
};

} // namespace impl

struct composing : impl::marker // derives from a class of the platform: the outer object of an aggregation
{
};
struct composable : impl::marker // may be derived from: the inner object of an aggregation
{
};
struct non_agile : impl::marker // must be called in its own apartment
{
};
struct no_weak_ref : impl::marker
{
};
struct no_module_lock : impl::marker // does not keep its DLL loaded
{
};

// Implemented, but not returned by GetIids.
template <typename I>
struct cloaked : I
{
};

namespace impl
{

template <typename I>
struct is_cloaked : std::false_type
{
};
template <typename I>
struct is_cloaked<cloaked<I>> : std::true_type
{
};

template <typename I>
struct uncloaked
{
    using type = default_interface<I>;
};
template <typename I>
struct uncloaked<cloaked<I>>
{
    using type = I;
};

template <typename... I>
struct interface_list
{
    static constexpr uint32_t uncloaked_count = (uint32_t{} + ... + (is_cloaked<I>::value ? 0 : 1));

    // The address of the object's interface with this id, without a reference; null when it has none.
    template <typename D>
    static void* find([[maybe_unused]] D const& object, guid const& id) noexcept
    {
        void* found = nullptr;
        static_cast<void>((... || (is_guid_of<typename uncloaked<I>::type>(id) &&
                                   (found = interface_of<typename uncloaked<I>::type>(object)))));
        return found;
    }

    template <typename D>
    static void append_ids([[maybe_unused]] guid* place) noexcept
    {
        (append_id<I>(place), ...);
    }

    template <typename Interface, typename D>
    static void* interface_of(D const& object) noexcept
    {
        return static_cast<producer<D, Interface> const&>(object).abi();
    }

  private:
    template <typename Interface>
    static void append_id(guid*& place) noexcept
    {
        if constexpr (!is_cloaked<Interface>::value)
        {
            *place++ = guid_of<typename uncloaked<Interface>::type>();
        }
    }
};

// The list without its markers.
template <typename List, typename... I>
struct without_markers
{
    using type = List;
};
template <typename... Kept, typename I, typename... Rest>
struct without_markers<interface_list<Kept...>, I, Rest...>
    : without_markers<
          std::conditional_t<std::is_base_of_v<marker, I>, interface_list<Kept...>, interface_list<Kept..., I>>,
          Rest...>
{
};

template <typename... I>
using interfaces_of = typename without_markers<interface_list<>, I...>::type;

template <typename Marker, typename... I>
inline constexpr bool has_marker = (std::is_same_v<Marker, I> || ...);

template <typename List>
struct first_of
{
    using type = Windows::Foundation::IInspectable;
};
template <typename First, typename... Rest>
struct first_of<interface_list<First, Rest...>>
{
    using type = typename uncloaked<First>::type;
};

template <typename D, typename List>
struct producers;
template <typename D, typename... I>
struct producers<D, interface_list<I...>> : producer_convert<D, typename uncloaked<I>::type>...
{
};

} // namespace impl

} // namespace winrt
