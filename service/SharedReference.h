#pragma once
#include <atomic>
#include <memory>

namespace VelmoNotificationClient
{

// A reference to a platform object, read and replaced by any thread at any time. No lock orders the threads: whoever
// reads gets what stands there at that moment, with a reference of its own, so that the object outlives the call made
// on it even when the field is replaced meanwhile. For static fields: handlers may still use it while the process
// exits, so its destruction releases nothing.
template <typename T>
class SharedReference
{
  public:
    constexpr SharedReference() noexcept : m_value() {}

    SharedReference(SharedReference const&) = delete;
    SharedReference& operator=(SharedReference const&) = delete;

    // NOLINTNEXTLINE(modernize-use-equals-default): a union's default would be deleted
    ~SharedReference() {}

    // Null when there is none.
    T Get() const noexcept
    {
        auto const value = m_value.load();
        return value ? *value : T(nullptr);
    }

    // What stood there before is released.
    void Set(T const& value) { m_value.store(value ? std::make_shared<T const>(value) : nullptr); }

    // Null from here on, unless another object than this one stands there.
    void Clear(T const& object) noexcept
    {
        auto held = m_value.load();
        while (held && *held == object && !m_value.compare_exchange_weak(held, nullptr))
        {
        }
    }

  private:
    union {
        std::atomic<std::shared_ptr<T const>> m_value; // never destroyed
    };
};

} // namespace VelmoNotificationClient
