// Apartments, and the factories of runtime classes.
#pragma once
#include "winrt/base/events.h"

// Set it to answer for runtime classes instead of the system, for instance from classes linked into the program.
inline int32_t(__stdcall* winrt_activation_handler)(void* classId, winrt::guid const& iid, void** factory) noexcept {};

namespace winrt
{

namespace Windows::Foundation
{

struct IActivationFactory : IInspectable
{
    IActivationFactory(std::nullptr_t = nullptr) noexcept {}
    IActivationFactory(void* object, take_ownership_from_abi_t) noexcept : IInspectable(object, take_ownership_from_abi)
    {
    }

    // A new instance of the factory's class, made with its default constructor.
    template <typename T>
    T ActivateInstance() const
    {
        IInspectable instance;
        check_hresult(
            static_cast<impl::abi<IActivationFactory>::type*>(get_abi(*this))->ActivateInstance(put_abi(instance)));
        return instance.as<T>();
    }
};

} // namespace Windows::Foundation

enum class apartment_type : int32_t
{
    multi_threaded = 0,
    single_threaded = 2
};

inline void init_apartment(apartment_type type = apartment_type::multi_threaded)
{
    check_hresult(impl::os::CoInitializeEx(nullptr, static_cast<uint32_t>(type)));
}

inline void uninit_apartment() noexcept
{
    impl::os::CoUninitialize();
}

namespace impl
{

[[gnu::noinline]] inline hresult get_factory(param::hstring const& name, guid const& id, void** factory) noexcept
{
    *factory = nullptr;
    if (winrt_activation_handler)
    {
        return winrt_activation_handler(get_abi(name), id, factory);
    }
    auto* const classId = get_abi(name);
    hresult result = os::RoGetActivationFactory(classId, id, factory);
    if (result == error_not_initialized)
    {
        // A thread without an apartment joins the multi-threaded one, which lives for the rest of the process.
        void* usage = nullptr;
        os::CoIncrementMTAUsage(&usage);
        result = os::RoGetActivationFactory(classId, id, factory);
    }
    return result;
}

// The kept factory of one class. Never destroyed: at the end of the process its DLL may be gone.
struct factory_cache_entry
{
    slim_mutex lock;
    void* factory{};
    factory_cache_entry* next{};
};

inline std::atomic<factory_cache_entry*>& factory_cache() noexcept
{
    static constinit std::atomic<factory_cache_entry*> head{};
    return head;
}

inline void keep_factory(factory_cache_entry& entry, Windows::Foundation::IUnknown const& factory) noexcept
{
    slim_lock_guard const guard(entry.lock);
    if (entry.factory)
    {
        return;
    }
    copy_to_abi(factory, entry.factory);
    // Listed once more after each clearing.
    entry.next = factory_cache().load(std::memory_order_relaxed);
    while (!factory_cache().compare_exchange_weak(entry.next, &entry, std::memory_order_release))
    {
    }
}

template <typename Class, typename I>
factory_cache_entry& cache_entry_of() noexcept
{
    static constinit factory_cache_entry entry{};
    return entry;
}

} // namespace impl

// Releases every cached factory; the next call of each class asks for its factory again. Not to be called while other
// threads use factories.
inline void clear_factory_cache() noexcept
{
    auto* entry = impl::factory_cache().exchange(nullptr, std::memory_order_acquire);
    while (entry)
    {
        auto* const next = entry->next;
        Windows::Foundation::IUnknown(std::exchange(entry->factory, nullptr), take_ownership_from_abi) = nullptr;
        entry = next;
    }
}

template <typename I>
impl::com_ref<I> get_activation_factory(param::hstring const& name)
{
    void* factory = nullptr;
    check_hresult(impl::get_factory(name, guid_of<I>(), &factory));
    return {factory, take_ownership_from_abi};
}

template <typename I>
impl::com_ref<I> try_get_activation_factory(param::hstring const& name) noexcept
{
    void* factory = nullptr;
    impl::get_factory(name, guid_of<I>(), &factory);
    return {factory, take_ownership_from_abi};
}

// The factory of a class, kept for the next call when it may be used in any apartment.
template <typename Class, typename I = Windows::Foundation::IActivationFactory>
impl::com_ref<I> get_activation_factory()
{
    auto& entry = impl::cache_entry_of<Class, I>();
    impl::com_ref<I> factory{nullptr};
    {
        slim_shared_lock_guard const guard(entry.lock);
        copy_from_abi(factory, entry.factory);
    }
    if (!factory)
    {
        factory = get_activation_factory<I>(name_of<Class>());
        if (factory.template try_as<impl::IAgileObject>())
        {
            impl::keep_factory(entry, factory);
        }
    }
    return factory;
}

template <typename Class, typename I = Windows::Foundation::IActivationFactory>
impl::com_ref<I> try_get_activation_factory() noexcept
{
    return try_get_activation_factory<I>(name_of<Class>());
}

namespace impl
{

template <typename Class, typename I, typename F>
auto call_factory(F&& callback)
{
    return callback(get_activation_factory<Class, I>());
}

} // namespace impl

} // namespace winrt
