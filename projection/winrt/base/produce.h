// One interface of an implementation: the object that a caller's interface pointer points at.
#pragma once
#include "winrt/base/reference_count.h"

namespace winrt::impl
{

template <typename D, typename I>
struct producer;

// The generated produce<D, I> derives from this and turns each slot into a call of a method of D.
template <typename D, typename I>
struct produce_base : abi<I>::type
{
    D& shim() noexcept { return *static_cast<D*>(reinterpret_cast<producer<D, I>*>(this)); }

    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept final
    {
        return shim().QueryInterface(id, object);
    }
    uint32_t __stdcall AddRef() noexcept final { return shim().AddRef(); }
    uint32_t __stdcall Release() noexcept final { return shim().Release(); }
    int32_t __stdcall GetIids(uint32_t* count, guid** ids) noexcept final
    {
        return shim().DelegatingGetIids(count, ids);
    }
    int32_t __stdcall GetRuntimeClassName(void** name) noexcept final
    {
        return shim().DelegatingGetRuntimeClassName(name);
    }
    int32_t __stdcall GetTrustLevel(int32_t* level) noexcept final { return shim().DelegatingGetTrustLevel(level); }
};

template <typename D>
struct produce<D, Windows::Foundation::IInspectable> : produce_base<D, Windows::Foundation::IInspectable>
{
};

template <typename D>
struct produce<D, Windows::Foundation::IActivationFactory> : produce_base<D, Windows::Foundation::IActivationFactory>
{
    int32_t __stdcall ActivateInstance(void** instance) noexcept final
    try
    {
        *instance = nullptr;
        Windows::Foundation::IInspectable result = this->shim().ActivateInstance();
        *instance = detach_abi(result);
        return error_ok;
    }
    catch (...)
    {
        return to_hresult();
    }
};

// The interface of an aggregated object that only its outer object holds.
template <typename D>
struct produce<D, INonDelegatingInspectable> : INonDelegatingInspectable
{
    D& shim() noexcept { return *static_cast<D*>(reinterpret_cast<producer<D, INonDelegatingInspectable>*>(this)); }

    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept final
    {
        return shim().NonDelegatingQueryInterface(id, object);
    }
    uint32_t __stdcall AddRef() noexcept final { return shim().NonDelegatingAddRef(); }
    uint32_t __stdcall Release() noexcept final { return shim().NonDelegatingRelease(); }
    int32_t __stdcall GetIids(uint32_t* count, guid** ids) noexcept final
    {
        return shim().NonDelegatingGetIids(count, ids);
    }
    int32_t __stdcall GetRuntimeClassName(void** name) noexcept final
    {
        return shim().NonDelegatingGetRuntimeClassName(name);
    }
    int32_t __stdcall GetTrustLevel(int32_t* level) noexcept final { return shim().NonDelegatingGetTrustLevel(level); }
};

template <typename D>
struct produce<D, IWeakReferenceSource> : IWeakReferenceSource
{
    D& shim() noexcept { return *static_cast<D*>(reinterpret_cast<producer<D, IWeakReferenceSource>*>(this)); }

    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept final
    {
        return shim().QueryInterface(id, object);
    }
    uint32_t __stdcall AddRef() noexcept final { return shim().AddRef(); }
    uint32_t __stdcall Release() noexcept final { return shim().Release(); }
    int32_t __stdcall GetWeakReference(IWeakReference** reference) noexcept final
    {
        *reference = shim().make_weak_block();
        return *reference ? error_ok : error_bad_alloc;
    }
};

template <typename D, typename I>
struct producer
{
    produce<D, I> vtable;

    void* abi() const noexcept { return const_cast<produce<D, I>*>(&vtable); }
};

template <typename D, typename I>
struct producer_convert : producer<D, I>
{
    operator I() const noexcept
    {
        I result{nullptr};
        copy_from_abi(result, this->abi());
        return result;
    }
};

// An interface of an implementation, borrowed: no reference is taken.
template <typename T>
struct producer_ref : T
{
    explicit producer_ref(void* object) noexcept : T(object, take_ownership_from_abi) {}
    producer_ref(producer_ref const&) = delete;
    producer_ref& operator=(producer_ref const&) = delete;
    ~producer_ref() noexcept { detach_abi(*this); }
};

} // namespace winrt::impl
