// The reference count of an implementation. Weak references move the count into a block of its own, which outlives
// the object.
#pragma once
#include "winrt/base/weak_ref.h"

namespace winrt::impl
{

inline uint32_t add_one(std::atomic<uint32_t>& count) noexcept
{
    return count.fetch_add(1, std::memory_order_relaxed) + 1;
}

// The owner of the last reference sees all that the other owners did before.
inline uint32_t subtract_one(std::atomic<uint32_t>& count) noexcept
{
    return count.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

// Lives as long as the object or any weak reference to it.
class weak_block final : public IWeakReference
{
  public:
    weak_block(unknown_abi* object, uint32_t strong) noexcept : m_object(object), m_strong(strong) {}

    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept final
    {
        if (is_guid_of<IWeakReference>(id) || is_guid_of<Windows::Foundation::IUnknown>(id) ||
            is_guid_of<IAgileObject>(id))
        {
            *object = static_cast<IWeakReference*>(this);
            AddRef();
            return error_ok;
        }
        *object = nullptr;
        return error_no_interface;
    }
    uint32_t __stdcall AddRef() noexcept final { return add_one(m_weak); }
    // Not inlined: GCC 12 guesses that any object which is released may be one of these, and warns of the guess.
    [[gnu::noinline]] uint32_t __stdcall Release() noexcept final
    {
        auto const remaining = subtract_one(m_weak);
        if (remaining == 0)
        {
            delete this;
        }
        return remaining;
    }

    // An object without a strong reference is not revived: the count never leaves zero.
    int32_t __stdcall Resolve(guid const& id, void** object) noexcept final
    {
        *object = nullptr;
        auto strong = m_strong.load(std::memory_order_relaxed);
        do
        {
            if (strong == 0)
            {
                return error_ok;
            }
        } while (
            !m_strong.compare_exchange_weak(strong, strong + 1, std::memory_order_acquire, std::memory_order_relaxed));
        auto const result = m_object->QueryInterface(id, object);
        m_object->Release();
        return result;
    }

    uint32_t add_strong() noexcept { return add_one(m_strong); }
    uint32_t subtract_strong() noexcept { return subtract_one(m_strong); }
    // Before the block is published.
    void set_strong(uint32_t strong) noexcept { m_strong.store(strong, std::memory_order_relaxed); }

  private:
    ~weak_block() = default;

    unknown_abi* const m_object;
    std::atomic<uint32_t> m_strong;
    std::atomic<uint32_t> m_weak{1}; // the object's own hold on the block
};

// Either the count itself, or, marked by the topmost bit, the address of the weak block (halved: it is even).
class reference_count
{
  public:
    ~reference_count() noexcept
    {
        auto const value = m_value.load(std::memory_order_acquire);
        if (is_block(value))
        {
            // Made while the object was being destroyed: what it leads to is gone.
            block_of(value)->set_strong(0);
            block_of(value)->Release();
        }
    }

    uint32_t add() noexcept
    {
        auto value = m_value.load(std::memory_order_acquire);
        while (!is_block(value))
        {
            if (m_value.compare_exchange_weak(value, value + 1, std::memory_order_acquire))
            {
                return static_cast<uint32_t>(value + 1);
            }
        }
        return block_of(value)->add_strong();
    }

    uint32_t subtract() noexcept
    {
        auto value = m_value.load(std::memory_order_acquire);
        while (!is_block(value))
        {
            if (m_value.compare_exchange_weak(value, value - 1, std::memory_order_acq_rel, std::memory_order_acquire))
            {
                return static_cast<uint32_t>(value - 1);
            }
        }
        return block_of(value)->subtract_strong();
    }

    // After the last reference: references taken and given back by the destructor must not destroy the object again,
    // and a weak reference must not bring it back.
    void stabilize() noexcept
    {
        auto const value = m_value.exchange(1, std::memory_order_acq_rel);
        if (is_block(value))
        {
            block_of(value)->Release();
        }
    }

    // With a reference for the caller; null when there is no memory.
    weak_block* make_weak(unknown_abi* object) noexcept
    {
        auto value = m_value.load(std::memory_order_acquire);
        weak_block* fresh = nullptr;
        while (!is_block(value))
        {
            fresh = fresh ? fresh : new (std::nothrow) weak_block(object, 0);
            if (!fresh)
            {
                return nullptr;
            }
            fresh->set_strong(static_cast<uint32_t>(value));
            auto const encoded = encode(fresh);
            if (m_value.compare_exchange_weak(value, encoded, std::memory_order_acq_rel, std::memory_order_acquire))
            {
                fresh->AddRef();
                return fresh;
            }
        }
        if (fresh) // another thread was first
        {
            fresh->Release();
        }
        block_of(value)->AddRef();
        return block_of(value);
    }

  private:
    static constexpr uintptr_t block_bit = uintptr_t{1} << (sizeof(uintptr_t) * 8 - 1);

    static bool is_block(uintptr_t value) noexcept { return (value & block_bit) != 0; }
    static weak_block* block_of(uintptr_t value) noexcept { return reinterpret_cast<weak_block*>(value << 1); }
    static uintptr_t encode(weak_block* block) noexcept { return reinterpret_cast<uintptr_t>(block) >> 1 | block_bit; }

    std::atomic<uintptr_t> m_value{1};
};

} // namespace winrt::impl
