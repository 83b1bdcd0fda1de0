// What every implementation has: its life, its identity, and the two sides of aggregation.
#pragma once
#include "winrt/base/interface_list.h"

namespace winrt
{

// Objects alive in this module: a DLL must not unload before it is zero.
inline std::atomic<uint32_t>& get_module_lock() noexcept
{
    static constinit std::atomic<uint32_t> count{};
    return count;
}

namespace impl
{

template <bool Counted>
struct module_lock
{
    module_lock() noexcept { ++get_module_lock(); }
    module_lock(module_lock const&) = delete;
    module_lock& operator=(module_lock const&) = delete;
    ~module_lock() noexcept { --get_module_lock(); }
};
template <>
struct module_lock<false>
{
};

struct counted
{
    reference_count m_references;
};

// The outer object: what it does not implement itself, its inner object does.
template <bool Composing>
struct outer_part
{
    static constexpr bool has_inner = false;
};
template <>
struct outer_part<true>
{
    static constexpr bool has_inner = true;

    template <typename To>
    auto as() const
    {
        return m_inner.as<To>();
    }
    template <typename To>
    auto try_as() const noexcept
    {
        return m_inner.try_as<To>();
    }
    explicit operator bool() const noexcept { return static_cast<bool>(m_inner); }

  protected:
    Windows::Foundation::IInspectable m_inner;
};

// The owner of the interfaces: the object itself.
template <typename D, bool Composable>
struct identity_part
{
    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept
    {
        return self().NonDelegatingQueryInterface(id, object);
    }
    uint32_t __stdcall AddRef() noexcept { return self().NonDelegatingAddRef(); }
    uint32_t __stdcall Release() noexcept { return self().NonDelegatingRelease(); }
    int32_t __stdcall DelegatingGetIids(uint32_t* count, guid** ids) noexcept
    {
        return self().NonDelegatingGetIids(count, ids);
    }
    int32_t __stdcall DelegatingGetRuntimeClassName(void** name) noexcept
    {
        return self().NonDelegatingGetRuntimeClassName(name);
    }
    int32_t __stdcall DelegatingGetTrustLevel(int32_t* level) noexcept
    {
        return self().NonDelegatingGetTrustLevel(level);
    }

  protected:
    static constexpr bool is_inner() noexcept { return false; }

  private:
    D& self() noexcept { return static_cast<D&>(*this); }
};

// The owner of the interfaces of the inner object of an aggregation: its outer object, to which it holds no reference.
// Without an outer object it is the object itself.
template <typename D>
struct identity_part<D, true> : producer<D, INonDelegatingInspectable>
{
    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept
    {
        return whole()->QueryInterface(id, object);
    }
    uint32_t __stdcall AddRef() noexcept { return whole()->AddRef(); }
    uint32_t __stdcall Release() noexcept { return whole()->Release(); }
    int32_t __stdcall DelegatingGetIids(uint32_t* count, guid** ids) noexcept { return whole()->GetIids(count, ids); }
    int32_t __stdcall DelegatingGetRuntimeClassName(void** name) noexcept { return whole()->GetRuntimeClassName(name); }
    int32_t __stdcall DelegatingGetTrustLevel(int32_t* level) noexcept { return whole()->GetTrustLevel(level); }

  protected:
    bool is_inner() const noexcept { return m_outer != nullptr; }
    inspectable_abi* whole() noexcept { return m_outer ? m_outer : &this->vtable; }

  private:
    template <typename T>
    friend class composable_factory;

    inspectable_abi* m_outer{};
};

template <typename D, bool Weak>
struct weak_part
{
};
template <typename D>
struct weak_part<D, true> : producer<D, IWeakReferenceSource>
{
};

// The count is the first base: what the inner object does while it is released may still use it.
template <typename D, typename... I>
struct root_implements : counted,
                         module_lock<!has_marker<no_module_lock, I...>>,
                         outer_part<has_marker<composing, I...>>,
                         identity_part<D, has_marker<composable, I...>>,
                         weak_part<D, !has_marker<no_weak_ref, I...>>
{
    using interfaces = interfaces_of<I...>;
    using first_interface = typename first_of<interfaces>::type;

    root_implements() noexcept = default;
    root_implements(root_implements const&) = delete;
    root_implements& operator=(root_implements const&) = delete;
    virtual ~root_implements() noexcept = default;

    int32_t __stdcall NonDelegatingQueryInterface(guid const& id, void** object) noexcept
    {
        if (!object)
        {
            return error_pointer;
        }
        *object = interfaces::find(self(), id);
        if (*object)
        {
            this->AddRef();
            return error_ok;
        }
        if (is_guid_of<Windows::Foundation::IUnknown>(id) || is_guid_of<Windows::Foundation::IInspectable>(id))
        {
            return query_identity(object);
        }
        return query_service(id, object);
    }
    uint32_t __stdcall NonDelegatingAddRef() noexcept { return this->m_references.add(); }
    uint32_t __stdcall NonDelegatingRelease() noexcept
    {
        auto const remaining = this->m_references.subtract();
        if (remaining == 0)
        {
            this->m_references.stabilize();
            if constexpr (requires { D::final_release(std::unique_ptr<D>()); })
            {
                D::final_release(std::unique_ptr<D>(&self()));
            }
            else
            {
                delete this;
            }
        }
        return remaining;
    }
    int32_t __stdcall NonDelegatingGetIids(uint32_t* count, guid** ids) noexcept
    {
        uint32_t innerCount = 0;
        guid* innerIds = nullptr;
        if constexpr (outer_part<has_marker<composing, I...>>::has_inner)
        {
            if (auto* inner = static_cast<inspectable_abi*>(get_abi(this->m_inner)))
            {
                inner->GetIids(&innerCount, &innerIds);
            }
        }
        *count = interfaces::uncloaked_count + innerCount;
        *ids = *count == 0 ? nullptr : static_cast<guid*>(os::CoTaskMemAlloc(*count * sizeof(guid)));
        auto const enough = *count == 0 || *ids;
        if (enough)
        {
            interfaces::template append_ids<D>(*ids);
            std::copy_n(innerIds, innerCount, *ids + interfaces::uncloaked_count);
        }
        os::CoTaskMemFree(innerIds);
        *count = enough ? *count : 0;
        return enough ? error_ok : error_bad_alloc;
    }
    int32_t __stdcall NonDelegatingGetRuntimeClassName(void** name) noexcept
    try
    {
        *name = nullptr;
        *name = detach_abi(GetRuntimeClassName());
        return error_ok;
    }
    catch (...)
    {
        return to_hresult();
    }
    int32_t __stdcall NonDelegatingGetTrustLevel(int32_t* level) noexcept
    {
        *level = static_cast<int32_t>(GetTrustLevel());
        return error_ok;
    }

    virtual hstring GetRuntimeClassName() const = 0;
    virtual Windows::Foundation::TrustLevel GetTrustLevel() const noexcept
    {
        return Windows::Foundation::TrustLevel::BaseTrust;
    }

    // Without a reference.
    void* get_unknown() const noexcept { return interfaces::template interface_of<first_interface>(self()); }

    weak_block* make_weak_block() noexcept
    {
        return this->m_references.make_weak(static_cast<unknown_abi*>(get_unknown()));
    }

  protected:
    // Interfaces that are answered for without being in the list.
    virtual int32_t query_interface_tearoff(guid const&, void**) const noexcept { return error_no_interface; }

  private:
    D& self() noexcept { return static_cast<D&>(*this); }
    D const& self() const noexcept { return static_cast<D const&>(*this); }
    int32_t query_identity(void** object) noexcept
    {
        if constexpr (has_marker<composable, I...>)
        {
            if (this->is_inner()) // asked for by the outer object itself, which holds this one
            {
                *object = static_cast<producer<D, INonDelegatingInspectable>&>(self()).abi();
                NonDelegatingAddRef();
                return error_ok;
            }
        }
        *object = get_unknown();
        this->AddRef();
        return error_ok;
    }

    int32_t query_service([[maybe_unused]] guid const& id, void** object) noexcept
    {
        if constexpr (!has_marker<non_agile, I...>)
        {
            if (is_guid_of<IAgileObject>(id))
            {
                *object = get_unknown();
                this->AddRef();
                return error_ok;
            }
        }
        if constexpr (!has_marker<no_weak_ref, I...>)
        {
            if (is_guid_of<IWeakReferenceSource>(id) && !this->is_inner())
            {
                *object = static_cast<producer<D, IWeakReferenceSource>&>(self()).abi();
                this->AddRef();
                return error_ok;
            }
        }
        auto const tearoff = query_interface_tearoff(id, object);
        if constexpr (outer_part<has_marker<composing, I...>>::has_inner)
        {
            if (tearoff == error_no_interface && this->m_inner)
            {
                return this->m_inner.as(id, object);
            }
        }
        return tearoff;
    }
};

} // namespace impl

} // namespace winrt
